// Services that fail in every way that services fail.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>

#include "platform/simulated/simulated_time_machine.h"
#include "platform/user_defaults.h"
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
        if (!random_.chance(faultRate)) {
            const auto answer = timeMachine_.run(executablePath, arguments, timeoutSeconds);
            if (answer && arguments.front() == "status")
                lastStatus_ = *answer;
            return answer;
        }
        constexpr double killDelaySeconds = 2;
        switch (random_.whole(0, 6)) {
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
        case 5:
            return lastStatus_; // late: it tells of a time before the last answer
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
    mutable std::optional<CommandResult> lastStatus_;
};

/// Settings of which some writes never arrive.
class FaultyDefaults final : public UserDefaults {
public:
    FaultyDefaults(UserDefaults& kept, Random& random) : kept_(kept), random_(random) {}

    double lossRate = 0;
    bool lostAny = false;                   ///< Since it was reset last.
    std::optional<std::int64_t> writesLeft; ///< Then the program is dead, and writes nothing more.

    std::optional<PropertyList> object(const std::string& key) const override { return kept_.object(key); }
    void set(const std::string& key, PropertyList value) override {
        if (lost()) {
            outdated_.insert(key);
            return;
        }
        outdated_.erase(key);
        kept_.set(key, std::move(value));
    }
    void remove(const std::string& key) override {
        if (!lost())
            kept_.remove(key);
    }

    /// The last write of this value was lost.
    [[nodiscard]] bool isOutdated(const std::string& key) const { return outdated_.contains(key); }

private:
    bool lost() {
        const bool dead = writesLeft && (*writesLeft)-- <= 0;
        const bool lose = dead || (lossRate > 0 && random_.chance(lossRate));
        lostAny |= lose;
        return lose;
    }

    UserDefaults& kept_;
    std::set<std::string> outdated_;
    Random& random_;
};

} // namespace norvane::simulation
