// Planning the next backup, firing it, deferring it, and the user's commands.
#include <algorithm>
#include <cmath>
#include <utility>

#include "controller/backup_controller.h"
#include "controller/deferral.h"
#include "controller/launch.h"

namespace norvane {

namespace {

constexpr double minimumTimerSeconds = 1;
constexpr double fireTolerance = 0.05; // of the wait
constexpr double maxFireToleranceSeconds = 30;

std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const std::string& text : texts)
        result += (result.empty() ? "" : ", ") + text;
    return result;
}

/// The number without its fraction; a double, because stored hours may exceed every integer type.
std::string withoutFraction(double number) {
    return fillIn("%.0f", {std::trunc(number) + 0.0}); // which turns -0 into 0
}

} // namespace

void BackupController::reschedule() {
    if (bounds_.skipIsOver(now()))
        setSkip(std::nullopt);
    const Plan plan =
        planNextFire(bounds_, store_.lastBackupDate(), state_.schedule, services_.calendar, now());
    publish(&ControllerState::nextFire, plan.nextFire);
    publish(&ControllerState::deferredFrom, plan.deferredFrom);
    publish(&ControllerState::catchUpPending, plan.catchUp);
    armFireTimer();
}

void BackupController::armFireTimer() {
    const std::optional<Instant> next = state_.nextFire;
    if (std::exchange(armedFor_, next) != next)
        log(next ? "Next backup scheduled for " + logTimestamp(*next) : "No backup scheduled");
    fireTimer_.reset();
    store_.setPlannedFireDate(next);
    if (!next)
        return;
    const double interval = std::max(secondsBetween(now(), *next), minimumTimerSeconds);
    const double tolerance = std::min(interval * fireTolerance, maxFireToleranceSeconds);
    fireTimer_ = services_.timers.once(interval, tolerance, [this] { requestBackup(true); });
}

/// A backup takes the planned one's place. What is stored stays, so that a start after a crash makes up for
/// it.
void BackupController::dropPlan() {
    fireTimer_.reset();
    publish(&ControllerState::nextFire, std::nullopt);
    publish(&ControllerState::deferredFrom, std::nullopt);
}

void BackupController::requestBackup(bool scheduled) {
    if (scheduled && diskLook_ && !diskLook_->scheduled)
        return; // that one comes to a backup, or tells why not
    diskLook_.reset();
    setSkip(std::nullopt);
    clearCatchUp();
    if (run_.running())
        return log(scheduled ? "Scheduled fire while a backup is already running — nothing to do"
                             : "Back Up Now ignored — already running");
    if (scheduled && state_.conditions.hasAnyCondition() && deferIfBlocked())
        return;
    if (!destinationVanished())
        return startUnlessProblem(scheduled);
    // Maybe another disk was chosen since. Until that is known the user may change the plan, or ask again.
    diskLook_ = std::make_shared<DiskLook>(DiskLook{scheduled});
    relearnDestination([this, look = diskLook_] {
        if (look != diskLook_)
            return; // overtaken
        diskLook_.reset();
        if (run_.running())
            return;
        look->scheduled && !destinationVanished() ? requestBackup(true) : startUnlessProblem(look->scheduled);
    });
}

void BackupController::startUnlessProblem(bool scheduled) {
    withdrawDueBackup();
    if (const auto problem = preflightProblem(services_.files.homeVolumeAvailableBytes(),
                                              destinationVanished(), state_.destinationName))
        return recordFailure(*problem);
    announce(scheduled ? "Scheduled backup requested" : "Manual backup requested");
    run_.request(now());
    bounds_.retryFloor.reset();
    dropPlan();
    setPolling(true);
    launch();
}

/// True: conditions forbid the backup and there is time to wait for better ones.
bool BackupController::deferIfBlocked() {
    const auto reasons = ConditionProbes::deferralReasons(state_.conditions, destinationFolder_,
                                                          services_.measurements, services_.files);
    if (reasons.empty())
        return false;
    const auto wait = deferral(state_.deferral, reasons, state_.conditions, now());
    if (!wait) {
        log("Max deferral reached (" + withoutFraction(state_.conditions.maxDeferralHours) +
            "h) — backing up despite: " + joined(reasons));
        return false;
    }
    publish(&ControllerState::deferral, wait);
    announce("Waiting " + joined(reasons));
    const double interval = std::max(secondsBetween(now(), wait->nextCheck), minimumTimerSeconds);
    recheckTimer_ = services_.timers.once(interval, 0, [this] { requestBackup(true); });
    return true;
}

/// Neither the deferral nor a look for the disk leads to a scheduled backup any more.
void BackupController::withdrawDueBackup() {
    if (diskLook_ && diskLook_->scheduled)
        diskLook_.reset();
    recheckTimer_.reset();
    publish(&ControllerState::deferral, std::nullopt);
}

void BackupController::setPause(std::optional<Instant> until) {
    bounds_.pausedUntil = until;
    publish(&ControllerState::pausedUntil, until);
}

void BackupController::setSkip(std::optional<Instant> occurrence) {
    bounds_.skipUntilAfter = occurrence;
    publish(&ControllerState::skipArmed, occurrence.has_value());
}

void BackupController::clearCatchUp() {
    bounds_.catchUpAt.reset();
    publish(&ControllerState::catchUpPending, false);
}

void BackupController::pause(Instant until) {
    withdrawDueBackup();
    setPause(until);
    announce("Paused until " + services_.formats.dateAndTime(until));
    reschedule();
}

void BackupController::pauseUntilTomorrow() {
    const Calendar& calendar = services_.calendar;
    pause(calendar.startOfDay(calendar.addingDays(1, now()).value_or(now())));
}

void BackupController::resume() {
    setPause(std::nullopt);
    announce("Schedule resumed");
    reschedule();
}

void BackupController::skipNext() {
    const std::optional<Instant> next = state_.nextFire;
    if (!next)
        return;
    withdrawDueBackup();
    clearCatchUp();
    setSkip(next);
    announce("Skipping the " + services_.formats.shortTime(*next) + " backup");
    reschedule();
}

void BackupController::dismissDeferral() {
    if (!state_.deferral)
        return;
    withdrawDueBackup();
    announce("Deferred backup dismissed");
    reschedule();
}

void BackupController::setSchedule(const Schedule& schedule) {
    if (schedule == state_.schedule)
        return;
    store_.setSchedule(schedule);
    publish(&ControllerState::schedule, schedule);
    withdrawDueBackup();
    reschedule();
}

void BackupController::setConditions(const ConditionsConfig& conditions) {
    if (conditions == state_.conditions)
        return;
    store_.setConditions(conditions);
    publish(&ControllerState::conditions, conditions);
    if (!state_.deferral)
        return;
    recheckTimer_.reset();
    requestBackup(true);
}

} // namespace norvane
