#include "controller/backup_run.h"

#include <algorithm>
#include <utility>

namespace norvane {

namespace {

constexpr double startTimeoutSeconds = 60;
constexpr double stopWindowSeconds = 180;
constexpr int mostLooks = 5;

} // namespace

void BackupRun::request(Instant now) {
    if (auto* idle = std::get_if<Idle>(&state_))
        idle->requestedAt = now;
}

void BackupRun::dropRequest() {
    if (auto* idle = std::get_if<Idle>(&state_))
        idle->requestedAt.reset();
}

bool BackupRun::neverStarted(Instant now) const {
    const auto* idle = std::get_if<Idle>(&state_);
    return idle && idle->requestedAt && secondsBetween(*idle->requestedAt, now) > startTimeoutSeconds;
}

BackupRun::CopyNews BackupRun::copied(std::int64_t bytes, Instant now) {
    auto* run = std::get_if<Running>(&state_);
    if (!run)
        return CopyNews::none;
    if (!run->copied || run->copied->bytes != bytes) {
        run->copied = {bytes, now};
        return std::exchange(run->stalled, false) ? CopyNews::resumed : CopyNews::none;
    }
    if (run->stalled || secondsBetween(run->copied->since, now) < stallMinutes * 60)
        return CopyNews::none;
    run->stalled = true;
    return CopyNews::stalled;
}

BackupRun::End BackupRun::end(Instant now) {
    const auto stopRequestedAt = std::exchange(stopRequestedAt_, std::nullopt);
    Idle idle;
    const bool stopped = stopRequestedAt && secondsBetween(*stopRequestedAt, now) < stopWindowSeconds;
    if (const auto* run = std::get_if<Running>(&state_); run && !stopped)
        idle.search = Search{run->since};
    state_ = idle;
    return stopped ? End::stopped : End::unverified;
}

std::optional<Instant> BackupRun::soughtSince() const {
    const auto* idle = std::get_if<Idle>(&state_);
    return idle && idle->search ? std::optional(idle->search->backupStart) : std::nullopt;
}

bool BackupRun::lookAgain() {
    auto* idle = std::get_if<Idle>(&state_);
    const bool again = idle && idle->search && ++idle->search->looks < mostLooks;
    if (!again)
        endSearch();
    return again;
}

void BackupRun::endSearch() {
    if (auto* idle = std::get_if<Idle>(&state_))
        idle->search.reset();
}

bool hasSnapshotSince(const std::vector<TMUtil::DestinationStatus>& destinations, Instant start) {
    constexpr double lookBackSeconds = 120;
    const Instant earliest = plusSeconds(start, -lookBackSeconds);
    return std::any_of(destinations.begin(), destinations.end(), [&](const auto& destination) {
        const auto& dates = destination.snapshotDates;
        return std::any_of(dates.begin(), dates.end(), [&](Instant date) { return date >= earliest; });
    });
}

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

} // namespace norvane
