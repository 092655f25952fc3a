// Repeatable chance.
#pragma once

#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

namespace norvane::simulation {

/// The same seed gives the same numbers on every machine: only the engine is the library's.
class Random {
public:
    explicit Random(std::uint64_t seed) : engine_(seed) {}

    /// 0 to 1, 1 left out.
    double fraction() { return static_cast<double>(engine_() >> 11) * 0x1.0p-53; }
    bool chance(double probability) { return fraction() < probability; }
    double between(double least, double most) { return least + fraction() * (most - least); }
    std::int64_t whole(std::int64_t least, std::int64_t most) {
        return least + static_cast<std::int64_t>(fraction() * static_cast<double>(most - least + 1));
    }
    /// Waiting times between events that happen every `mean` on average.
    double exponential(double mean) { return -mean * std::log(1 - fraction()); }
    template <class Value>
    const Value& pick(const std::vector<Value>& values) {
        return values[static_cast<std::size_t>(whole(0, static_cast<std::int64_t>(values.size()) - 1))];
    }

private:
    std::mt19937_64 engine_;
};

} // namespace norvane::simulation
