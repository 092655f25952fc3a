#include "controller/alerts.h"

#include "platform/text/letter_case.h"

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

/// None unless both figures are known and there is a disk to speak of.
std::optional<double> usedFraction(const HealthData& data) {
    if (!data.destinationBytesUsed || !data.destinationBytesAvailable)
        return std::nullopt;
    const auto used = static_cast<double>(*data.destinationBytesUsed);
    const double total = used + static_cast<double>(*data.destinationBytesAvailable);
    return total >= 1 ? std::optional(used / total) : std::nullopt;
}

} // namespace

const char* rawValue(BackupHealth health) {
    return health == BackupHealth::ok ? "ok" : health == BackupHealth::stale ? "stale" : "critical";
}

BackupHealth healthOf(std::optional<Instant> lastBackup, std::int64_t failureStreak, Instant now) {
    const double ageSeconds = secondsBetween(lastBackup.value_or(distantPast), now);
    if (ageSeconds > criticalAgeSeconds || failureStreak >= criticalStreak)
        return BackupHealth::critical;
    if (ageSeconds > staleAgeSeconds || failureStreak > 0)
        return BackupHealth::stale;
    return BackupHealth::ok;
}

Notification Alerts::crashed() const {
    return {translate("Norvane crashed last time"),
            translate("Open the menu to send the crash report — or ignore this and it won't be sent."),
            "crash"};
}

Notification Alerts::stalled(bool destinationVanished) const {
    return {translate("Backup appears stalled"),
            translate(destinationVanished
                          ? "Your backup disk seems to have disconnected — no progress in a while."
                          : "Time Machine hasn't made progress in a while. It may resume on its own, or your "
                            "backup disk may have disconnected."),
            "stall"};
}

Notification Alerts::failed(const std::string& problem, std::int64_t failureStreak, Instant retryAt) const {
    const std::string retryTime = formats_.shortTime(retryAt);
    if (failureStreak < criticalStreak)
        return {translate("Backup failed"),
                fillIn(translate("%@. Retrying around %@."), {capitalized(problem), retryTime}), "failure",
                translate(backupLabel)};
    return {fillIn(translate("Backups are failing (%d in a row)"), {failureStreak}),
            fillIn(translate("Check that your backup disk is connected and has space. Next attempt "
                             "around %@."),
                   {retryTime}),
            "failure", translate(backupLabel)};
}

std::vector<Notification> Alerts::warnings(const HealthData& data, bool backupRuns, Instant now) const {
    std::vector<Notification> warnings;
    const double age = data.lastSuccess ? secondsBetween(*data.lastSuccess, now) : 0;
    if (age > criticalAgeSeconds && !backupRuns)
        warnings.push_back(
            {fillIn(translate("No verified backup in %d days"),
                    {static_cast<std::int64_t>(age / daySeconds)}),
             fillIn(translate("The last backup that actually reached your backup disk was %@."),
                    {formats_.dateAndTime(*data.lastSuccess)}),
             "stale", translate(backupLabel)});
    const std::optional<double> fraction = usedFraction(data);
    if (fraction && *fraction >= fullDestinationFraction)
        warnings.push_back(
            {fillIn(translate("Backup disk %d%% full"), {static_cast<std::int64_t>(*fraction * 100)}),
             translate("Time Machine will thin old backups to cope, shortening your history. Consider a "
                       "larger destination."),
             "destinationFull"});
    if (data.sourceFreeBytes && *data.sourceFreeBytes < lowSourceBytes)
        warnings.push_back(
            {translate("Startup disk is low on space"),
             fillIn(translate("%.1f GB free — backups need at least 10 GB to stage and will start failing "
                              "below that."),
                    {static_cast<double>(*data.sourceFreeBytes) / 1e9}),
             "sourceLow"});
    return warnings;
}

bool Alerts::mayWarn(const std::string& matter, Instant now) {
    const std::string key = "watchdog" + matter + ".lastSent";
    const std::optional<Instant> lastSent = defaults_.date(key);
    if (lastSent && secondsBetween(*lastSent, now) <= alertGateSeconds)
        return false;
    defaults_.set(key, {now});
    return true;
}

} // namespace norvane
