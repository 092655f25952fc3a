// A simulated machine with the program on it, for tests.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/simulated_program.h"

namespace norvane {

/// Thursday, 2026-03-05 10:00 UTC.
inline const Instant harnessStart =
    std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};

struct ControllerHarness : SimulatedMachine, SimulatedProgram {
    ControllerHarness() : SimulatedMachine(harnessStart), SimulatedProgram(*this, timeMachine, defaults) {}

    /// Starts the program and lets the start-up checks and the launch grace pass, with an empty log.
    void startSettled() {
        start();
        time.advance(5 * 60);
        logFile.text.clear();
    }

    [[nodiscard]] int pollsOfAMinute() {
        const int before = timeMachine.statusQueries;
        time.advance(60);
        return timeMachine.statusQueries - before;
    }

    [[nodiscard]] bool logged(const std::string& message) const { return countLogged(message) > 0; }
    [[nodiscard]] std::ptrdiff_t countLogged(const std::string& message) const {
        const auto messages = loggedMessages();
        return std::count(messages.begin(), messages.end(), message);
    }

    /// The lines of the log without their timestamps.
    [[nodiscard]] std::vector<std::string> loggedMessages() const {
        constexpr std::size_t stampLength = 26;
        std::vector<std::string> messages;
        for (std::size_t start = 0; start < logFile.text.size();) {
            const std::size_t end = logFile.text.find('\n', start);
            messages.push_back(logFile.text.substr(start + stampLength, end - start - stampLength));
            start = end + 1;
        }
        return messages;
    }
};

/// Minutes after harnessStart.
inline Instant minute(double minutes) { return plusSeconds(harnessStart, minutes * 60); }

} // namespace norvane
