// From the request to the verified snapshot: starting a backup, following it, and judging its end.
#include <algorithm>
#include <limits>
#include <utility>

#include "controller/backup_controller.h"
#include "controller/planning.h"
#include "platform/text/white_space.h"

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

constexpr double endpointTimeoutSeconds = 5;
constexpr double startTimeoutSeconds = 60;
constexpr int stallMinutes = 10;
constexpr double stopWindowSeconds = 180;
constexpr double snapshotLookBackSeconds = 120;
constexpr std::int64_t verifyRetries = 4;
constexpr double verifyRetrySeconds = 5;
constexpr double assumedBackupSeconds = 3600; // when the start was not seen
constexpr std::int64_t tooFewFreeBytes = 9'999'999'999;

std::string quoted(const std::optional<std::string>& destinationName) {
    return '"' + destinationName.value_or("destination") + '"';
}

/// Whether the destination can be expected to answer: true for all but a network destination that is silent.
bool destinationAnswers(const TMUtil& tmUtil, const TMUtil::DestinationSummary& summary) {
    if (summary.kind != "Network" || !summary.urlString)
        return true;
    const std::vector<NetworkEndpoint> endpoints = TMUtil::endpoints(*summary.urlString);
    return endpoints.empty() || std::any_of(endpoints.begin(), endpoints.end(), [&](const auto& endpoint) {
               return tmUtil.canConnect(endpoint, endpointTimeoutSeconds);
           });
}

bool hasSnapshotSince(const std::vector<TMUtil::DestinationStatus>& destinations, Instant start) {
    const Instant earliest = plusSeconds(start, -snapshotLookBackSeconds);
    return std::any_of(destinations.begin(), destinations.end(), [&](const auto& destination) {
        const auto& dates = destination.snapshotDates;
        return std::any_of(dates.begin(), dates.end(), [&](Instant date) { return date >= earliest; });
    });
}

/// What Time Machine itself says went wrong, on the first destination that says anything; else empty.
std::string reportedError(const std::vector<TMUtil::DestinationStatus>& destinations) {
    for (const TMUtil::DestinationStatus& destination : destinations) {
        if (destination.result.value_or(0) == 0)
            continue;
        std::string text = " — Time Machine reported error " + std::to_string(*destination.result);
        const char* separator = " — while processing: ";
        for (const std::string& parameter : destination.messageParameters) {
            text += separator + parameter;
            separator = ", ";
        }
        return text;
    }
    return {};
}

} // namespace

/// What came of asking Time Machine for a backup.
struct BackupController::LaunchOutcome {
    std::optional<std::string> destinationName;
    bool destinationAnswers = true;
    std::optional<CommandResult> startBackup; // none: not run, or it could not be
    std::optional<TMStatus> status;           // after a successful start
};

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
    if (state_.pausedUntil && *state_.pausedUntil <= current) {
        publish(&ControllerState::pausedUntil, std::nullopt);
        announce("Pause ended");
        reschedule();
    }
    updateHealth();
    if (!pollInFlight_) {
        pollInFlight_ = true;
        pollStatus();
    }
}

void BackupController::pollStatus() {
    inBackground([&tmUtil = services_.tmUtil] { return tmUtil.status(); },
                 [this](TMStatus status) {
                     pollInFlight_ = false;
                     applyStatus(std::move(status));
                     checkNeverStarted();
                     checkProgress();
                 });
}

std::optional<std::string> BackupController::preflightProblem() const {
    const std::optional<std::int64_t> freeBytes = services_.files.homeVolumeAvailableBytes();
    if (freeBytes && *freeBytes <= tooFewFreeBytes)
        return fillIn(
            "Startup disk is nearly full (%.1f GB free) — Time Machine needs room to stage backups. "
            "Free up space",
            {static_cast<double>(*freeBytes) / 1e9});
    if (destinationVanished())
        return "Backup disk " + quoted(state_.destinationName) + " isn't mounted";
    return std::nullopt;
}

bool BackupController::destinationVanished() const {
    return destinationMountPoint_ && !isConnected(*destinationMountPoint_, services_.files);
}

void BackupController::launchBackup() {
    inBackground(
        [&tmUtil = services_.tmUtil] {
            LaunchOutcome outcome;
            const TMUtil::DestinationSummary summary = tmUtil.destinationSummary();
            outcome.destinationName = summary.name;
            outcome.destinationAnswers = destinationAnswers(tmUtil, summary);
            if (!outcome.destinationAnswers)
                return outcome;
            outcome.startBackup = tmUtil.startBackup();
            if (outcome.startBackup && outcome.startBackup->exitCode == 0)
                outcome.status = tmUtil.status();
            return outcome;
        },
        [this](const LaunchOutcome& outcome) { takeLaunchOutcome(outcome); });
}

void BackupController::takeLaunchOutcome(const LaunchOutcome& outcome) {
    if (!outcome.destinationAnswers)
        failLaunch("Backup drive " + quoted(outcome.destinationName) +
                   " isn't responding on the network — it may be asleep, off, or on a different network");
    else if (!outcome.startBackup)
        failLaunch("startbackup could not run");
    else if (outcome.startBackup->exitCode != 0)
        failLaunch("startbackup exited " + std::to_string(outcome.startBackup->exitCode) + ": " +
                   std::string(trimWhitespace(outcome.startBackup->stderr)));
    else
        applyStatus(*outcome.status);
}

void BackupController::failLaunch(const std::string& message) {
    awaitingStart_.reset();
    setPolling(false);
    recordFailure(message);
}

void BackupController::stopBackup() {
    stopRequestedAt_ = now();
    announce("Stop requested");
    inBackground(
        [&tmUtil = services_.tmUtil] {
            tmUtil.stopBackup();
            return tmUtil.status();
        },
        [this](TMStatus status) { applyStatus(std::move(status)); });
}

void BackupController::applyStatus(TMStatus status) {
    const bool wasRunning = state_.status.running;
    const bool isRunning = status.running;
    publish(&ControllerState::status, std::move(status));
    if (!wasRunning && isRunning)
        backupStarted();
    else if (wasRunning && !isRunning)
        backupEnded();
}

/// Requested here or started by Time Machine itself: both are followed to the end.
void BackupController::backupStarted() {
    awaitingStart_.reset();
    catchUpAt_.reset();
    publish(&ControllerState::catchUpPending, false);
    clearDeferral();
    backupStartedAt_ = now();
    verifyingStart_.reset();
    lastProgressBytes_.reset();
    lastProgressChangeAt_.reset();
    publish(&ControllerState::stalled, false);
    announce("Backup started");
    setPolling(true);
    fireTimer_.reset();
    publish(&ControllerState::nextFire, std::nullopt);
    publish(&ControllerState::deferredFrom, std::nullopt);
}

void BackupController::backupEnded() {
    lastProgressBytes_.reset();
    lastProgressChangeAt_.reset();
    publish(&ControllerState::stalled, false);
    const std::optional<Instant> stopRequestedAt = stopRequestedAt_;
    stopRequestedAt_.reset();
    if (stopRequestedAt && secondsBetween(*stopRequestedAt, now()) < stopWindowSeconds) {
        announce("Backup stopped");
        setPolling(false);
        reschedule();
        return;
    }
    verifyingStart_ = backupStartedAt_.value_or(plusSeconds(now(), -assumedBackupSeconds));
    verifyAttempts_ = 0;
    announce("Verifying backup…");
    beginVerification();
}

void BackupController::checkNeverStarted() {
    if (!awaitingStart_ || state_.status.running ||
        secondsBetween(*awaitingStart_, now()) <= startTimeoutSeconds)
        return;
    failLaunch("Backup never started within 60s of the request");
}

void BackupController::checkProgress() {
    const TMStatus& status = state_.status;
    if (!status.running || status.phase != "Copying" || !status.progress)
        return;
    if (lastProgressBytes_ == status.progress->bytes) {
        checkStall();
        return;
    }
    lastProgressBytes_ = status.progress->bytes;
    lastProgressChangeAt_ = now();
    if (state_.stalled) {
        publish(&ControllerState::stalled, false);
        announce("Backup progress resumed");
    }
}

void BackupController::checkStall() {
    if (!lastProgressChangeAt_) {
        lastProgressChangeAt_ = now();
        return;
    }
    if (state_.stalled || secondsBetween(*lastProgressChangeAt_, now()) < stallMinutes * 60)
        return;
    publish(&ControllerState::stalled, true);
    announce("Backup appears stalled — no progress in " + std::to_string(stallMinutes) + " min");
    postAlert(
        {translate("Backup appears stalled"),
         translate(destinationVanished()
                       ? "Your backup disk seems to have disconnected — no progress in a while."
                       : "Time Machine hasn't made progress in a while. It may resume on its own, or your "
                         "backup disk may have disconnected."),
         "stall"});
}

void BackupController::beginVerification() {
    if (!verifyingStart_)
        return;
    inBackground(
        [&tmUtil = services_.tmUtil] { return tmUtil.destinationStatuses(); },
        [this, start = *verifyingStart_](const std::vector<TMUtil::DestinationStatus>& destinations) {
            if (verifyingStart_ == start) // else a newer backup has taken over
                judgeVerification(destinations);
        });
}

void BackupController::judgeVerification(const std::vector<TMUtil::DestinationStatus>& destinations) {
    const Instant start = *verifyingStart_;
    const bool verified = hasSnapshotSince(destinations, start);
    if (verified || destinations.empty()) {
        verifyingStart_.reset();
        finishBackup(verified);
        return;
    }
    if (verifyAttempts_ >= verifyRetries) {
        verifyingStart_.reset();
        setPolling(false);
        recordFailure("Backup ended without a new snapshot on any destination" + reportedError(destinations));
        return;
    }
    ++verifyAttempts_;
    verifyTimer_ = services_.timers.once(verifyRetrySeconds, 0, [this, start] {
        if (verifyingStart_ == start)
            beginVerification();
    });
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
    retryFloor_ = plusSeconds(now(), retryDelaySeconds(consecutiveFailures_));
    postFailureAlert(message, *retryFloor_);
    updateHealth();
    reschedule();
}

} // namespace norvane
