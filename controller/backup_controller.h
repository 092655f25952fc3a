// The one long-lived object of the program: every decision about when a backup starts, and its way to the
// end.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "controller/alerts.h"
#include "controller/backup_run.h"
#include "controller/controller_state.h"
#include "controller/destination_folder.h"
#include "controller/log/event_log.h"
#include "controller/observers.h"
#include "controller/planning.h"
#include "diagnostics/crash_reporter.h"
#include "platform/background.h"
#include "platform/condition_measurements.h"
#include "platform/file_system.h"
#include "platform/formats.h"
#include "platform/notifications.h"
#include "platform/process_activity.h"
#include "platform/system_events.h"
#include "platform/time/clock.h"
#include "platform/time/timers.h"
#include "platform/translator.h"
#include "platform/user_defaults.h"
#include "scheduler_core/calendar.h"
#include "scheduler_core/settings_store.h"
#include "timemachine/tm_util.h"

namespace norvane {

/// What the controller works with. Everything referred to must outlive the controller and all background
/// work.
struct ControllerServices {
    const Clock& clock;
    Timers& timers;
    Background& background;
    UserDefaults& defaults;
    const TMUtil& tmUtil;
    const FileSystem& files;
    ConditionMeasurements& measurements;
    Notifications& notifications;
    SystemEvents& systemEvents;
    ProcessActivity& processActivity;
    const CrashReporter& crashReporter;
    const EventLog& eventLog;
    const Formats& formats;
    const Translator& translator;
    Calendar calendar;   ///< The user's, at the start of the program.
    std::string version; ///< Of the program; empty when it has none.
    std::int64_t processId;
};

/// Main thread only; what blocks runs in the background, and its result comes back to the main thread.
///
/// One backup is armed (nextFire is set, and the fire timer runs), deferred while conditions forbid it
/// (deferral is set), requested, seen running and looked for among the snapshots (all three in run_). Then it
/// has finished, and the streak of failures ends, or failed, and no other fires before the retry; and the
/// next one is armed.
class BackupController {
public:
    /// Reads the settings, plans and arms the first backup and starts the checks of a program start.
    explicit BackupController(ControllerServices services);
    ~BackupController();
    BackupController(const BackupController&) = delete;
    BackupController& operator=(const BackupController&) = delete;

    /// The live controller of this process, for code outside the view tree; null when there is none.
    [[nodiscard]] static BackupController* current();

    [[nodiscard]] const ControllerState& state() const { return state_; }

    /// Destroying it ends the subscription, at any time, also after the controller.
    using Subscription = Observers::Subscription;
    /// Calls `observer` after every assignment to a published field, even of an equal value.
    [[nodiscard]] std::unique_ptr<Subscription> subscribe(std::function<void()> observer) {
        return observers_.add(std::move(observer));
    }

    /// Starts a backup now. `scheduled`: asked by a timer, so conditions may defer it; else by the user.
    void requestBackup(bool scheduled);
    void stopBackup();
    void pause(Instant until);
    void pauseUntilTomorrow();
    void resume();
    /// Passes over the planned backup; nothing happens when none is planned.
    void skipNext();
    /// Gives up the waiting backup; the next one comes by the schedule.
    void dismissDeferral();
    void setSchedule(const Schedule& schedule);
    void setConditions(const ConditionsConfig& conditions);
    void refreshHealthData();
    void refreshAutoBackupFlag();
    /// Learns anew where backups go, and then what refreshAutoBackupFlag() learns.
    void refreshDestination();
    /// Posts one notification; every one of the program goes this way.
    void postAlert(const Notification& alert);
    /// The user sent or dismissed the crash report.
    void clearPendingCrashReport();
    /// The user chose whether to use the program's own accent colour: every view takes it up.
    void refreshAccent();

private:
    /// A request that misses its disk waits until Time Machine has told where backups go now.
    struct DiskLook {
        bool scheduled;
    };

    // Start-up and system events (backup_controller.cpp).
    void noteFirstLaunch();
    void noteMissedBackup();
    void checkCrashReports();
    void checkStatus();
    void handleWake();
    void updateHealth();
    void relearnDestination(std::function<void()> learned);
    void takeDestination(const TMUtil::DestinationSummary& summary);
    [[nodiscard]] bool destinationVanished() const;

    // Planning, firing and deferral (firing.cpp).
    void reschedule();
    void armFireTimer();
    bool deferIfBlocked();
    void startUnlessProblem(bool scheduled);
    void dropPlan();
    void withdrawDueBackup();
    void setPause(std::optional<Instant> until);
    void setSkip(std::optional<Instant> occurrence);
    void clearCatchUp();

    // Following a backup (run_monitor.cpp).
    void setPolling(bool fast);
    void pollTick();
    void launch();
    void failLaunch(const std::string& message);
    void applyStatus(TMStatus status);
    void backupStarted();
    void backupEnded();
    void checkProgress();
    void beginVerification();
    void judgeVerification(const std::vector<TMUtil::DestinationStatus>& destinations, Instant start);
    void finishBackup(bool verified);
    void recordFailure(const std::string& message);

    [[nodiscard]] Instant now() const { return services_.clock.now(); }
    void log(const std::string& message) const { services_.eventLog.log(message); }
    /// An event that the user cares about: shown and logged.
    void announce(const std::string& event);
    /// Runs `work` off the main thread and delivers its result while this controller lives.
    template <class Work, class Deliver>
    void inBackground(Work work, Deliver deliver) {
        runInBackground(services_.background, lifetime_, std::move(work), std::move(deliver));
    }
    /// Runs a tool and delivers what it has told.
    template <class Answer, class Deliver>
    void ask(Answer (TMUtil::*question)() const, Deliver deliver) {
        inBackground([&tmUtil = services_.tmUtil, question] { return (tmUtil.*question)(); },
                     std::move(deliver));
    }
    template <class Value>
    void publish(Value ControllerState::*field, std::type_identity_t<Value> value) {
        state_.*field = std::move(value);
        observers_.notify();
    }

    const ControllerServices services_;
    SettingsStore store_;
    Alerts alerts_;
    ControllerState state_;
    Observers observers_;
    PlanBounds bounds_;
    BackupRun run_;
    std::int64_t consecutiveFailures_ = 0;               // mirrors the stored failure streak
    std::optional<DestinationFolder> destinationFolder_; // of a local destination; none: network, or unknown
    std::shared_ptr<DiskLook> diskLook_;                 // none: no request waits for it

    // Timers, each replaced in one function.
    std::unique_ptr<Timer> pollTimer_;
    std::unique_ptr<Timer> fireTimer_;
    std::unique_ptr<Timer> recheckTimer_;
    std::unique_ptr<Timer> verifyTimer_;
    std::optional<Instant> armedFor_; // what fireTimer_ is armed for

    // Polling.
    bool pollingFast_ = false;
    bool pollInFlight_ = false;
    std::optional<Instant> lastTickAt_;
    std::int64_t slowTickCount_ = 0;

    std::unique_ptr<ProcessActivity::Token> activityToken_;
    std::unique_ptr<SystemEvents::Observation> systemObservation_;
    Lifetime lifetime_; // last: gone before anything that a late result could touch
};

} // namespace norvane
