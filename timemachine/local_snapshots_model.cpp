#include "timemachine/local_snapshots_model.h"

#include <algorithm>
#include <utility>

namespace norvane {

namespace {

constexpr auto startupVolume = "/";
constexpr double coverageSeconds = 6 * 3600;

} // namespace

std::set<std::string> coveredSnapshots(const std::vector<TMUtil::LocalSnapshot>& snapshots,
                                       const std::vector<Instant>& backupDates) {
    std::vector<Instant> dates = backupDates;
    std::sort(dates.begin(), dates.end());
    std::set<std::string> covered;
    for (const TMUtil::LocalSnapshot& snapshot : snapshots) {
        const auto next = std::lower_bound(dates.begin(), dates.end(), snapshot.date);
        if (next != dates.end() && *next <= plusSeconds(snapshot.date, coverageSeconds))
            covered.insert(snapshot.token);
    }
    return covered;
}

std::int64_t LocalSnapshotsState::uncoveredCount() const {
    if (!onDestination)
        return 0;
    return std::count_if(snapshots.begin(), snapshots.end(), [this](const TMUtil::LocalSnapshot& snapshot) {
        return !onDestination->contains(snapshot.token);
    });
}

struct LocalSnapshotsModel::Reading {
    std::vector<TMUtil::LocalSnapshot> snapshots;
    std::optional<std::set<std::string>> onDestination;
    std::optional<std::string> destinationName;
    std::string startupVolumeName;
};

struct LocalSnapshotsModel::Deletion {
    std::int64_t failures = 0;
    std::vector<TMUtil::LocalSnapshot> snapshots;
};

LocalSnapshotsModel::LocalSnapshotsModel(LocalSnapshotsServices services, std::function<void()> changed)
    : services_(std::move(services)), changed_(std::move(changed)) {}

void LocalSnapshotsModel::refresh() {
    state_.loading = true;
    state_.errorMessage.reset();
    changed_();
    const auto read = [&tmUtil = services_.tmUtil, &files = services_.files,
                       calendar = services_.calendar()] {
        Reading reading;
        reading.snapshots = tmUtil.listLocalSnapshots(startupVolume, calendar);
        const auto destinations = tmUtil.destinationStatuses();
        if (!destinations.empty())
            reading.onDestination = coveredSnapshots(reading.snapshots, destinations.front().snapshotDates);
        reading.destinationName = tmUtil.destinationSummary().name;
        reading.startupVolumeName = files.displayName(startupVolume);
        return reading;
    };
    runInBackground(services_.background, lifetime_, read,
                    [this](Reading reading) { take(std::move(reading)); });
}

void LocalSnapshotsModel::take(Reading reading) {
    state_.snapshots = std::move(reading.snapshots);
    state_.onDestination = std::move(reading.onDestination);
    state_.destinationName = std::move(reading.destinationName);
    state_.startupVolumeName = std::move(reading.startupVolumeName);
    state_.loading = false;
    changed_();
}

void LocalSnapshotsModel::deleteTokens(std::vector<std::string> tokens) {
    if (tokens.empty() || state_.busy)
        return;
    state_.busy = true;
    state_.errorMessage.reset();
    changed_();
    const auto remove = [&tmUtil = services_.tmUtil, tokens = std::move(tokens),
                         calendar = services_.calendar()] {
        Deletion deletion;
        for (const std::string& token : tokens)
            deletion.failures += tmUtil.deleteLocalSnapshot(token) ? 0 : 1;
        deletion.snapshots = tmUtil.listLocalSnapshots(startupVolume, calendar);
        return deletion;
    };
    runInBackground(services_.background, lifetime_, remove,
                    [this](Deletion deletion) { take(std::move(deletion)); });
}

void LocalSnapshotsModel::take(Deletion deletion) {
    state_.snapshots = std::move(deletion.snapshots);
    state_.busy = false;
    if (deletion.failures > 0)
        state_.errorMessage =
            fillIn(services_.translator.translate(
                       "Couldn't remove %d snapshot(s). Time Machine may be busy — try again shortly."),
                   {deletion.failures});
    changed_();
}

void LocalSnapshotsModel::deleteAll() {
    std::vector<std::string> tokens;
    for (const TMUtil::LocalSnapshot& snapshot : state_.snapshots)
        tokens.push_back(snapshot.token);
    deleteTokens(std::move(tokens));
}

} // namespace norvane
