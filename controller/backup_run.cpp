#include "controller/backup_run.h"

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

void BackupRun::start(Instant now) { state_ = Running{now}; }

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

bool BackupRun::mayLookAgain() {
    auto* idle = std::get_if<Idle>(&state_);
    return idle && idle->search && ++idle->search->looks < mostLooks;
}

void BackupRun::endSearch() {
    if (auto* idle = std::get_if<Idle>(&state_))
        idle->search.reset();
}

} // namespace norvane
