// Start-up, system events, and what is asked for from time to time.
#include "controller/backup_controller.h"

#include <utility>

namespace norvane {

namespace {

constexpr std::uint64_t backgroundActivityOptions = 0xFF;
constexpr int wakeCatchUpMinutes = 2;

/// The one way from outside the view tree to the live controller; set and cleared only by the controller.
BackupController* liveController = nullptr;

} // namespace

BackupController::BackupController(ControllerServices services)
    : services_(std::move(services)), store_(services_.defaults),
      alerts_(services_.translator, services_.formats, services_.defaults),
      bounds_{plusSeconds(now(), static_cast<double>(store_.launchGraceMinutes()) * 60)} {
    state_.schedule = store_.schedule();
    state_.conditions = store_.conditions();
    log("——— Launched v" + (services_.version.empty() ? "dev" : services_.version) + " (pid " +
        std::to_string(services_.processId) + ") ———");
    noteFirstLaunch();
    state_.lastBackupDate = store_.lastBackupDate();
    consecutiveFailures_ = store_.failureStreak();
    noteMissedBackup();
    activityToken_ =
        services_.processActivity.begin(backgroundActivityOptions, "Norvane schedules Time Machine backups");
    liveController = this;
    setPolling(false);
    reschedule();
    checkCrashReports();
    systemObservation_ = services_.systemEvents.observe({[this] { handleWake(); },
                                                         [this] {
                                                             log("System clock changed — rescheduling");
                                                             reschedule();
                                                         },
                                                         [this] { refreshAccent(); }});
}

BackupController::~BackupController() {
    if (liveController == this)
        liveController = nullptr;
}

BackupController* BackupController::current() { return liveController; }

void BackupController::noteFirstLaunch() {
    if (store_.lastBackupDate())
        return;
    store_.setLastBackupDate(now());
    log("First launch: interval timing starts now");
}

void BackupController::noteMissedBackup() {
    const std::optional<Instant> planned = store_.plannedFireDate();
    if (!planned || *planned > now())
        return;
    bounds_.catchUpAt = bounds_.launchGraceUntil;
    log("Backup was missed while not running (planned " + logTimestamp(*planned) +
        ") — catching up after launch grace");
}

/// The first of four checks at the start: each starts the next once its result is applied.
void BackupController::checkCrashReports() {
    inBackground([&reporter = services_.crashReporter] { return reporter.findNewReports(); },
                 [this](const std::vector<std::string>& reports) {
                     if (!reports.empty()) {
                         const std::string& newest = reports.back();
                         publish(&ControllerState::pendingCrashReport, newest);
                         log("Crash log from a previous run found: " + newest.substr(newest.rfind('/') + 1));
                         postAlert(alerts_.crashed());
                     }
                     checkStatus();
                 });
}

void BackupController::checkStatus() {
    ask(&TMUtil::status, [this](const TMStatus& status) {
        applyStatus(status);
        refreshDestination();
    });
}

void BackupController::refreshDestination() {
    ask(&TMUtil::destinationSummary, [this](const TMUtil::DestinationSummary& summary) {
        takeDestination(summary);
        refreshAutoBackupFlag();
    });
}

/// Another disk may have been chosen since. A tool that fails tells nothing, and what was known stays known.
void BackupController::relearnDestination(std::function<void()> learned) {
    ask(&TMUtil::destinationSummary,
        [this, learned = std::move(learned)](const TMUtil::DestinationSummary& summary) {
            if (summary.name && summary.kind)
                takeDestination(summary);
            learned();
        });
}

void BackupController::takeDestination(const TMUtil::DestinationSummary& summary) {
    const bool local = summary.kind == "Local";
    const bool away = local && !summary.mountPoint && summary.name == state_.destinationName;
    publish(&ControllerState::destinationName, summary.name);
    if (away)
        return; // the same disk, and where it belongs is still known
    destinationFolder_ =
        local && summary.mountPoint
            ? std::optional(destinationFolderAt(*summary.mountPoint, services_.files, destinationFolder_))
            : std::nullopt;
}

bool BackupController::destinationVanished() const {
    return destinationFolder_ && !isConnected(*destinationFolder_, services_.files);
}

void BackupController::refreshAutoBackupFlag() {
    ask(&TMUtil::autoBackupEnabled,
        [this](std::optional<bool> enabled) { publish(&ControllerState::autoBackupOn, enabled); });
}

void BackupController::refreshHealthData() {
    inBackground([&tmUtil = services_.tmUtil, &files = services_.files,
                  &clock = services_.clock] { return HealthData::load(tmUtil, files, clock); },
                 [this](const HealthData& data) {
                     publish(&ControllerState::healthData, data);
                     for (const Notification& warning : alerts_.warnings(data, run_.running(), now()))
                         if (alerts_.mayWarn(warning.matter, now()))
                             postAlert(warning);
                 });
}

void BackupController::updateHealth() {
    const std::optional<Instant> last = state_.lastBackupDate;
    const BackupHealth health = healthOf(last, consecutiveFailures_, now());
    if (health == state_.health)
        return;
    publish(&ControllerState::health, health);
    const std::string success =
        last ? std::to_string(static_cast<std::int64_t>(secondsBetween(*last, now()) / 3600)) + "h ago"
             : "unknown"; // a store that keeps nothing
    log(std::string("Backup health: ") + rawValue(health) + " (last success " + success +
        ", failure streak " + std::to_string(consecutiveFailures_) + ")");
}

void BackupController::handleWake() {
    const auto catchUpFromNow = [this] { return plusSeconds(now(), wakeCatchUpMinutes * 60); };
    const bool sleptThrough = armedFor_ && *armedFor_ <= now();
    if (sleptThrough) {
        // Disk and network are still on their way, and so may be a new time: neither a timer that falls due
        // nor a new plan may take the catch-up's place.
        fireTimer_.reset();
        bounds_.catchUpAt = catchUpFromNow();
    }
    ask(&TMUtil::status, [this, sleptThrough, catchUpFromNow](const TMStatus& status) {
        applyStatus(status);
        if ((sleptThrough && bounds_.catchUpAt) || (armedFor_ && *armedFor_ <= now())) {
            bounds_.catchUpAt = catchUpFromNow();
            log("Woke past scheduled fire — catching up in " + std::to_string(wakeCatchUpMinutes) + " min");
        }
        reschedule();
    });
}

void BackupController::clearPendingCrashReport() {
    publish(&ControllerState::pendingCrashReport, std::nullopt);
}

void BackupController::postAlert(const Notification& alert) { services_.notifications.post(alert); }

void BackupController::refreshAccent() { publish(&ControllerState::accentEpoch, state_.accentEpoch + 1); }

void BackupController::announce(const std::string& event) {
    publish(&ControllerState::lastEvent, event);
    log(event);
}

} // namespace norvane
