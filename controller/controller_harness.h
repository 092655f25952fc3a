// A whole simulated machine around the real controller, for tests.
#pragma once

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "controller/backup_controller.h"
#include "platform/simulated/simulated_services.h"
#include "platform/simulated/simulated_time.h"
#include "platform/simulated/simulated_time_machine.h"
#include "platform/simulated/simulated_user_defaults.h"

namespace norvane {

/// Thursday, 2026-03-05 10:00 UTC.
inline const Instant harnessStart =
    std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};

struct ControllerHarness {
    SimulatedTime time{harnessStart};
    SimulatedTimeMachine timeMachine{time};
    SimulatedUserDefaults defaults;
    SimulatedFileSystem files;
    SimulatedMeasurements measurements;
    SimulatedNotifications notifications;
    SimulatedSystemEvents systemEvents;
    SimulatedProcessActivity processActivity;
    SimulatedNetworkProbe network;
    SimulatedWorkspace workspace;
    SimulatedLogFile logFile;
    SimulatedFormats formats;
    UntranslatedText texts;
    EventLog eventLog{time, logFile};
    TMUtil tmUtil{timeMachine, {"/usr/bin/tmutil", "/usr/bin/defaults"}, network, workspace};
    CrashReporter crashReporter{defaults, files, time, "/reports"};
    SettingsStore store{defaults};
    std::unique_ptr<BackupController> controller;

    ControllerHarness() { files.paths.insert(timeMachine.mountPoint); }

    /// Starts the program, again if it runs; what is stored survives.
    void start() {
        controller.reset();
        controller = std::make_unique<BackupController>(ControllerServices{
            time, time, time, defaults, tmUtil, files, measurements, notifications, systemEvents,
            processActivity, crashReporter, eventLog, formats, texts, *Calendar::inZone("UTC"), "1.0", 4711});
    }

    /// Starts the program and lets the start-up checks and the launch grace pass, with an empty log.
    void startSettled() {
        start();
        time.advance(5 * 60);
        logFile.text.clear();
    }

    [[nodiscard]] const ControllerState& state() const { return controller->state(); }
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
