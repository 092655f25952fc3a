// Health as derived from the last backup and the failure streak, the watchdog over the history, and the
// alerts.
#include <cmath>
#include <limits>

#include "controller/backup_controller.h"
#include "platform/letter_case.h"

namespace norvane {

namespace {

constexpr double daySeconds = 86'400;
constexpr double staleAgeSeconds = daySeconds;
constexpr double criticalAgeSeconds = 2 * daySeconds;
constexpr std::int64_t criticalStreak = 3;
constexpr double fullDestinationFraction = 0.9;
constexpr std::int64_t lowSourceBytes = 15'000'000'000;
constexpr double alertGateSeconds = daySeconds;
constexpr auto backupLabel = "Back Up Now"; // on alerts that a backup would put right

BackupHealth healthFor(double ageSeconds, std::int64_t failureStreak) {
    if (ageSeconds > criticalAgeSeconds || failureStreak >= criticalStreak)
        return BackupHealth::critical;
    if (ageSeconds > staleAgeSeconds || failureStreak > 0)
        return BackupHealth::stale;
    return BackupHealth::ok;
}

/// None unless both figures are known and there is a disk to speak of.
std::optional<double> usedFraction(const HealthData& data) {
    if (!data.destinationBytesUsed || !data.destinationBytesAvailable)
        return std::nullopt;
    const auto used = static_cast<double>(*data.destinationBytesUsed);
    const double total = used + static_cast<double>(*data.destinationBytesAvailable);
    return total >= 1 ? std::optional(used / total) : std::nullopt;
}

} // namespace

void BackupController::updateHealth() {
    const double age = state_.lastBackupDate ? secondsBetween(*state_.lastBackupDate, now())
                                             : std::numeric_limits<double>::infinity();
    const BackupHealth health = healthFor(age, consecutiveFailures_);
    if (health == state_.health)
        return;
    publish(&ControllerState::health, health);
    const std::string success = std::isfinite(age)
                                    ? std::to_string(static_cast<std::int64_t>(age / 3600)) + "h ago"
                                    : "unknown"; // a store that keeps nothing
    log(std::string("Backup health: ") + rawValue(health) + " (last success " + success +
        ", failure streak " + std::to_string(consecutiveFailures_) + ")");
}

void BackupController::refreshHealthData() {
    inBackground([&tmUtil = services_.tmUtil, &files = services_.files,
                  &clock = services_.clock] { return HealthData::load(tmUtil, files, clock); },
                 [this](const HealthData& data) {
                     publish(&ControllerState::healthData, data);
                     assessHealthData(data);
                 });
}

/// The gate is asked last in each rule: a rule that does not alert must not use it up.
void BackupController::assessHealthData(const HealthData& data) {
    const double age = data.lastSuccess ? secondsBetween(*data.lastSuccess, now()) : 0;
    if (age > criticalAgeSeconds && !state_.status.running && shouldAlert("stale"))
        postAlert({fillIn(translate("No verified backup in %d days"),
                          {static_cast<std::int64_t>(age / daySeconds)}),
                   fillIn(translate("The last backup that actually reached your backup disk was %@."),
                          {services_.formats.dateAndTime(*data.lastSuccess)}),
                   "stale", translate(backupLabel)});
    const std::optional<double> fraction = usedFraction(data);
    if (fraction && *fraction >= fullDestinationFraction && shouldAlert("destinationFull"))
        postAlert(
            {fillIn(translate("Backup disk %d%% full"), {static_cast<std::int64_t>(*fraction * 100)}),
             translate("Time Machine will thin old backups to cope, shortening your history. Consider a "
                       "larger destination."),
             "destinationFull"});
    if (data.sourceFreeBytes && *data.sourceFreeBytes < lowSourceBytes && shouldAlert("sourceLow"))
        postAlert(
            {translate("Startup disk is low on space"),
             fillIn(translate("%.1f GB free — backups need at least 10 GB to stage and will start failing "
                              "below that."),
                    {static_cast<double>(*data.sourceFreeBytes) / 1e9}),
             "sourceLow"});
}

bool BackupController::shouldAlert(const std::string& key) {
    const std::string defaultsKey = "watchdog" + key + ".lastSent";
    const std::optional<Instant> lastSent = services_.defaults.date(defaultsKey);
    if (lastSent && secondsBetween(*lastSent, now()) <= alertGateSeconds)
        return false;
    services_.defaults.set(defaultsKey, {now()});
    return true;
}

void BackupController::postAlert(const Notification& alert) { services_.notifications.post(alert); }

void BackupController::postStallAlert() {
    postAlert(
        {translate("Backup appears stalled"),
         translate(destinationVanished()
                       ? "Your backup disk seems to have disconnected — no progress in a while."
                       : "Time Machine hasn't made progress in a while. It may resume on its own, or your "
                         "backup disk may have disconnected."),
         "stall"});
}

void BackupController::postFailureAlert(const std::string& message, Instant retryAt) {
    const std::string retryTime = services_.formats.shortTime(retryAt);
    if (consecutiveFailures_ < criticalStreak)
        postAlert({translate("Backup failed"),
                   fillIn(translate("%@. Retrying around %@."), {capitalized(message), retryTime}), "failure",
                   translate(backupLabel)});
    else
        postAlert({fillIn(translate("Backups are failing (%d in a row)"), {consecutiveFailures_}),
                   fillIn(translate("Check that your backup disk is connected and has space. Next attempt "
                                    "around %@."),
                          {retryTime}),
                   "failure", translate(backupLabel)});
}

} // namespace norvane
