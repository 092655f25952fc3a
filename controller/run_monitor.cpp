// From the request to the verified snapshot: starting a backup, following it, and judging its end.
#include <limits>
#include <utility>

#include "controller/backup_controller.h"
#include "controller/launch.h"

namespace norvane {

namespace {

struct PollRate {
    double intervalSeconds;
    double toleranceSeconds;
    double longestGapSeconds; // between two polls, before it is worth a line in the log
};
constexpr PollRate fastRate{2, 0.5, 120};
constexpr PollRate slowRate{30, 10, 1800};
constexpr std::int64_t slowTicksPerRefresh = 10;

constexpr double verifyRetrySeconds = 5;

} // namespace

void BackupController::setPolling(bool fast) {
    if (pollTimer_ && fast == pollingFast_)
        return;
    pollingFast_ = fast;
    const PollRate& rate = fast ? fastRate : slowRate;
    pollTimer_ =
        services_.timers.repeating(rate.intervalSeconds, rate.toleranceSeconds, [this] { pollTick(); });
}

void BackupController::pollTick() {
    const Instant current = now();
    const PollRate& rate = pollingFast_ ? fastRate : slowRate;
    const double gap = lastTickAt_ ? secondsBetween(*lastTickAt_, current) : 0;
    if (gap > rate.longestGapSeconds)
        log("Timer gap: " + std::to_string(static_cast<std::int64_t>(gap)) + "s between polls (expected ~" +
            std::to_string(static_cast<int>(rate.intervalSeconds)) +
            "s) — sleep, system throttling, or a stall");
    lastTickAt_ = current;
    if (!pollingFast_ && ++slowTickCount_ % slowTicksPerRefresh == 0) {
        refreshAutoBackupFlag();
        relearnDestination([] {});
        refreshHealthData();
    }
    if (bounds_.pausedUntil && *bounds_.pausedUntil <= current) {
        setPause(std::nullopt);
        announce("Pause ended");
        reschedule();
    }
    updateHealth();
    if (std::exchange(pollInFlight_, true))
        return;
    ask(&TMUtil::status, [this](TMStatus status) {
        pollInFlight_ = false;
        applyStatus(std::move(status));
        if (run_.neverStarted(now()))
            failLaunch("Backup never started within 60s of the request");
        checkProgress();
    });
}

void BackupController::launch() {
    inBackground([&tmUtil = services_.tmUtil] { return launchBackup(tmUtil); },
                 [this](const LaunchOutcome& outcome) {
                     const auto* problem = std::get_if<LaunchProblem>(&outcome);
                     problem ? failLaunch(*problem) : applyStatus(std::get<TMStatus>(outcome));
                 });
}

void BackupController::failLaunch(const std::string& message) {
    run_.dropRequest();
    setPolling(false);
    recordFailure(message);
}

void BackupController::stopBackup() {
    run_.requestStop(now());
    announce("Stop requested");
    inBackground(
        [&tmUtil = services_.tmUtil] {
            tmUtil.stopBackup();
            return tmUtil.status();
        },
        [this](TMStatus status) { applyStatus(std::move(status)); });
}

void BackupController::applyStatus(TMStatus status) {
    const bool runs = status.running;
    publish(&ControllerState::status, std::move(status));
    if (runs && !run_.running())
        backupStarted();
    else if (!runs && run_.running())
        backupEnded();
}

/// Requested here or started by Time Machine itself: both are followed to the end.
void BackupController::backupStarted() {
    run_.start(now());
    clearCatchUp();
    withdrawDueBackup();
    publish(&ControllerState::stalled, false);
    announce("Backup started");
    setPolling(true);
    dropPlan();
}

void BackupController::backupEnded() {
    publish(&ControllerState::stalled, false);
    if (run_.end(now()) == BackupRun::End::stopped) {
        announce("Backup stopped");
        setPolling(false);
        reschedule();
        return;
    }
    announce("Verifying backup…");
    beginVerification();
}

void BackupController::checkProgress() {
    const TMStatus& status = state_.status;
    if (!status.running || status.phase != "Copying" || !status.progress)
        return;
    switch (run_.copied(status.progress->bytes, now())) {
    case BackupRun::CopyNews::none:
        break;
    case BackupRun::CopyNews::stalled:
        publish(&ControllerState::stalled, true);
        announce("Backup appears stalled — no progress in " + std::to_string(BackupRun::stallMinutes) +
                 " min");
        postAlert(alerts_.stalled(destinationVanished()));
        break;
    case BackupRun::CopyNews::resumed:
        publish(&ControllerState::stalled, false);
        announce("Backup progress resumed");
    }
}

void BackupController::beginVerification() {
    ask(&TMUtil::destinationStatuses,
        [this, start = run_.soughtSince()](const std::vector<TMUtil::DestinationStatus>& destinations) {
            if (start && run_.soughtSince() == start) // else a newer backup has taken over
                judgeVerification(destinations, *start);
        });
}

void BackupController::judgeVerification(const std::vector<TMUtil::DestinationStatus>& destinations,
                                         Instant start) {
    const bool verified = hasSnapshotSince(destinations, start);
    if (verified || destinations.empty()) {
        run_.endSearch();
        finishBackup(verified);
    } else if (run_.lookAgain()) {
        verifyTimer_ = services_.timers.once(verifyRetrySeconds, 0, [this, start] {
            if (run_.soughtSince() == start)
                beginVerification();
        });
    } else {
        setPolling(false);
        recordFailure("Backup ended without a new snapshot on any destination" + reportedError(destinations));
    }
}

void BackupController::finishBackup(bool verified) {
    store_.setLastBackupDate(now());
    publish(&ControllerState::lastBackupDate, store_.lastBackupDate());
    consecutiveFailures_ = 0;
    store_.setFailureStreak(0);
    refreshHealthData();
    announce(verified ? "Backup finished — snapshot verified"
                      : "Backup finished (snapshot verification unavailable)");
    setPolling(false);
    updateHealth();
    reschedule();
}

void BackupController::recordFailure(const std::string& message) {
    announce(message);
    if (consecutiveFailures_ <
        std::numeric_limits<std::int64_t>::max()) // the stored streak may be any number
        ++consecutiveFailures_;
    store_.setFailureStreak(consecutiveFailures_);
    bounds_.retryFloor = plusSeconds(now(), retryDelaySeconds(consecutiveFailures_));
    postAlert(alerts_.failed(message, consecutiveFailures_, *bounds_.retryFloor));
    updateHealth();
    reschedule();
}

} // namespace norvane
