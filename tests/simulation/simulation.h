// One life of the program, from a seed.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace norvane::simulation {

struct Outcome {
    std::uint64_t seed = 0;
    double years = 0;      ///< Lived without a violation.
    std::string violation; ///< The rule that broke; empty: none did.
    std::string report; ///< What led to it: the last happenings and lines of the log, and how to repeat it.
};

/// Lives `years`, or until a rule breaks.
[[nodiscard]] Outcome simulate(std::uint64_t seed, double years);

} // namespace norvane::simulation
