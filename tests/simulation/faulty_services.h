// Services that fail in every way that services fail.
#pragma once

#include <string>

#include "platform/simulated/simulated_time_machine.h"
#include "platform/simulated/simulated_user_defaults.h"
#include "tests/simulation/random.h"

namespace norvane::simulation {

/// Passes commands on to the simulated Time Machine and spoils some of the answers.
class FaultyTools final : public CommandRunner {
public:
    FaultyTools(SimulatedTimeMachine& timeMachine, SimulatedTime& time, Random& random)
        : timeMachine_(timeMachine), time_(time), random_(random) {}

    double faultRate = 0; ///< The share of answers that are spoiled.

    std::optional<CommandResult> run(const std::string& executablePath,
                                     const std::vector<std::string>& arguments,
                                     double timeoutSeconds) const override {
        if (!random_.chance(faultRate))
            return timeMachine_.run(executablePath, arguments, timeoutSeconds);
        constexpr double killDelaySeconds = 2;
        switch (random_.whole(0, 5)) {
        case 0:
            return std::nullopt; // cannot be started
        case 1:
            time_.spend(timeoutSeconds);
            return CommandResult{15, "", ""};
        case 2:
            time_.spend(timeoutSeconds + killDelaySeconds);
            return CommandResult{9, "{ Running = 1", ""};
        case 3:
            return CommandResult{static_cast<std::int32_t>(random_.whole(1, 255)), "", " failed \n"};
        case 4:
            return CommandResult{0, "\x01 garbage { = ; }", ""};
        default:
            break;
        }
        auto half = timeMachine_.run(executablePath, arguments, timeoutSeconds);
        if (half)
            half->stdout.resize(half->stdout.size() / 2);
        return half;
    }

private:
    SimulatedTimeMachine& timeMachine_;
    SimulatedTime& time_;
    Random& random_;
};

/// Settings of which some writes never arrive.
class FaultyDefaults final : public UserDefaults {
public:
    explicit FaultyDefaults(Random& random) : random_(random) {}

    double lossRate = 0;
    bool lostAny = false; ///< Since last reset by the watcher.

    std::optional<PropertyList> object(const std::string& key) const override { return kept_.object(key); }
    void set(const std::string& key, PropertyList value) override {
        if (!lost())
            kept_.set(key, std::move(value));
    }
    void remove(const std::string& key) override {
        if (!lost())
            kept_.remove(key);
    }

private:
    bool lost() {
        const bool lose = lossRate > 0 && random_.chance(lossRate);
        lostAny |= lose;
        return lose;
    }

    SimulatedUserDefaults kept_;
    Random& random_;
};

} // namespace norvane::simulation
