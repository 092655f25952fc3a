#include "timemachine/health_data.h"

#include <algorithm>

namespace norvane {

namespace {

constexpr double attemptHistorySeconds = 30 * 86400;
constexpr std::size_t maxAttempts = 20;
constexpr double attemptWindowSeconds = 6 * 3600;
/// Time Machine may stamp a snapshot a little before it records the attempt.
constexpr double snapshotLeadSeconds = 90;

std::vector<Instant> sorted(std::vector<Instant> dates) {
    std::sort(dates.begin(), dates.end());
    return dates;
}

std::vector<Instant> recentAttempts(const std::vector<Instant>& attemptDates, Instant now) {
    std::vector<Instant> dates = sorted(attemptDates);
    const Instant cutoff = plusSeconds(now, -attemptHistorySeconds);
    dates.erase(dates.begin(), std::upper_bound(dates.begin(), dates.end(), cutoff));
    if (dates.size() > maxAttempts)
        dates.erase(dates.begin(), dates.end() - maxAttempts);
    return dates;
}

HealthData::Attempt judged(Instant attempt, Instant nextAttempt, const std::vector<Instant>& snapshots) {
    const Instant start = plusSeconds(attempt, -snapshotLeadSeconds);
    const Instant end = std::min(plusSeconds(attempt, attemptWindowSeconds), nextAttempt);
    const auto snapshot = std::upper_bound(snapshots.begin(), snapshots.end(), start);
    if (snapshot == snapshots.end() || *snapshot >= end)
        return {attempt, attempt, false, std::nullopt};
    return {attempt, attempt, true, std::max(0.0, secondsBetween(attempt, *snapshot))};
}

} // namespace

HealthData HealthData::load(const TMUtil& tmUtil, const FileSystem& files, const Clock& clock) {
    const auto sourceFreeBytes = files.homeVolumeAvailableBytes();
    const auto statuses = tmUtil.destinationStatuses();
    return assemble(statuses, sourceFreeBytes, clock.now());
}

HealthData HealthData::assemble(const std::vector<TMUtil::DestinationStatus>& statuses,
                                std::optional<std::int64_t> sourceFreeBytes, Instant now) {
    HealthData data;
    data.sourceFreeBytes = sourceFreeBytes;
    if (statuses.empty())
        return data;
    const TMUtil::DestinationStatus& destination = statuses.front();
    data.destinationBytesUsed = destination.bytesUsed;
    data.destinationBytesAvailable = destination.bytesAvailable;
    const std::vector<Instant> snapshots = sorted(destination.snapshotDates);
    data.backupCount = static_cast<std::int64_t>(snapshots.size());
    if (!snapshots.empty()) {
        data.lastSuccess = snapshots.back();
        data.oldestBackup = snapshots.front();
    }
    const std::vector<Instant> attempts = recentAttempts(destination.attemptDates, now);
    for (std::size_t i = 0; i < attempts.size(); ++i)
        data.attempts.push_back(
            judged(attempts[i], i + 1 < attempts.size() ? attempts[i + 1] : distantFuture, snapshots));
    return data;
}

} // namespace norvane
