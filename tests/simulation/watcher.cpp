// Rules about what the program shows, stores, plans and does.
#include "tests/simulation/watcher.h"

#include <algorithm>

#include "scheduler_core/scheduling_engine.h"

namespace norvane::simulation {

namespace {

// Two polls, their tolerances and the latency of background work.
constexpr double fastLookSeconds = 8;
constexpr double slowLookSeconds = 45;

} // namespace

void Watcher::require(bool holds, std::string_view rule) {
    if (!holds && !violation_)
        violation_ = std::string(rule);
}

void Watcher::programStarted() {
    retryFloor_.reset();
    requestedAt_.reset();
    startedAt_.reset();
    verifyingSince_.reset();
    stopRequestedAt_.reset();
    skipped_.reset();
    loggedPlan_.reset();
    deferral_.reset();
    plan_.reset();
    pausedUntil_.reset();
    overruledAt_.reset();
    catchUpAt_.reset();
    lastBackup_ = state().lastBackupDate;
    diskIsKnown_ = true;
    copiedBytes_.reset();
    shown_ = "Launched";
    stalled_ = false;
    running_ = false;
    startsAllowed_ = 0;
    jumpsSeen_ = 0;
    forgetDurations();
    failures_ = w_.program.store.failureStreak();
    require(w_.logFile.text.substr(std::min<std::size_t>(26, w_.logFile.text.size()))
                .starts_with("——— Launched v1.0 (pid "),
            "the first line of a start is the launch line");
    require(w_.settings.lossRate > 0 || w_.settings.lostAny || lastBackup_,
            "from its first launch on, the program counts from a date");
    const bool missed = w_.plannedBefore && *w_.plannedBefore <= w_.startedAt;
    const bool told = w_.logFile.text.find("Backup was missed while not running") != std::string::npos;
    require(missed == told, "a start tells of the backup that was missed, and of no other");
}

void Watcher::look() {
    ++looks_;
    if (jumpsSeen_ != w_.jumps)
        forgetDurations();
    jumpsSeen_ = w_.jumps;
    logGrew_ = !w_.logFile.text.empty();
    onlyWaits_ = true;
    newPlanExplained_ = false;
    diskIsKnown_ &= !w_.otherDiskChosen && w_.timeMachine.kind == "Local" && !toolsAreFaulty();
    if (!state().destinationName)
        diskIsKnown_ &= !diskIsGone();
    newSnapshotTold_.seconds(verifyingSince_ && newSnapshotIsTold(surelyNewSeconds), now());
    // A clock that moves with the wake gives a new plan before the program tells of the one slept through.
    if (w_.wokeAt && plan_ && *plan_ <= *w_.wokeAt)
        catchUpAt_ = plusSeconds(*w_.wokeAt, 120);
    w_.wokeAt.reset();
    readLog();
    checkAlerts();
    checkState();
    checkCommands();
    checkAttention();
    checkStall();
    if (logGrew_ || looks_ % 16 == 0)
        checkWatchdogs();
    checkPunctuality();
    if (logGrew_ || looks_ % 64 == 0)
        checkProspect();
    if (logGrew_ || state().nextFire != plan_ || state().deferral != deferral_ || looks_ % 1024 == 0) {
        checkPlan();
        checkTimers();
        checkDeferral();
        checkStore();
    }
    if (plan_ != state().nextFire)
        jumpsAtPlan_ = w_.jumps;
    plan_ = state().nextFire;
    if (deferral_ != state().deferral) {
        jumpsAtDeferral_ = w_.jumps;
        deferredAt_ = now();
        deferral_ = state().deferral;
    }
    if (!state().skipArmed)
        skipped_.reset();
    pausedUntil_ = state().pausedUntil;
    stalled_ = state().stalled;
    w_.clockMoved = false;
    w_.userAsked &= mayAskForTheDisk();
}

void Watcher::forgetDurations() {
    for (Lasting* duration :
         {&toolsWork_, &unseen_, &wrongHealth_, &overdue_, &overduePause_, &preferencesTell_,
          &newSnapshotTold_, &stuck_, &fullDisk_, &fullStartupDisk_, &oldBackup_, &wrongSwitch_})
        duration->forget();
}

void Watcher::checkAlerts() {
    static const std::map<std::string, std::string> lastSentKeys = {
        {"No verified backup in ", "watchdogstale.lastSent"},
        {"Backup disk ", "watchdogdestinationFull.lastSent"},
        {"Startup disk is low on space", "watchdogsourceLow.lastSent"}};
    const auto& posted = w_.notifications.posted;
    for (; alertsSeen_ < posted.size(); ++alertsSeen_) {
        const std::string& title = posted[alertsSeen_].title;
        const auto key = lastSentKeys.find(title.substr(0, title.find_first_of("0123456789")));
        if (key == lastSentKeys.end()) {
            --expectedAlerts_;
            continue;
        }
        const auto& [kind, lastSentKey] = *key;
        const auto last = watchdogs_.find(kind);
        require(last == watchdogs_.end() || !last->second.stored ||
                    secondsBetween(last->second.at, now()) > 86'400,
                "the same warning comes at most once a day");
        require(kind != "No verified backup in " || !state().status.running,
                "no warning of old backups while one runs");
        watchdogs_[kind] = {now(), !w_.settings.isOutdated(lastSentKey)};
    }
    require(expectedAlerts_ == 0, "each alert has a reason in the log, and each such reason one alert");
}

void Watcher::checkState() {
    const ControllerState& s = state();
    require(!s.stalled || s.status.running, "only a running backup is stalled");
    require(s.status.running == running_, "running is what the log says");
    require(!s.deferral || !s.status.running, "nothing is deferred while a backup runs");
    require(!s.catchUpPending || s.nextFire, "a catch-up is planned");
    require(!s.catchUpPending || !s.deferredFrom, "a catch-up was not moved out of a blackout");
    require(!s.deferredFrom || !s.nextFire || *s.deferredFrom < *s.nextFire,
            "a blackout moves a backup later");
    require(!s.skipArmed || skipped_, "only what the user skipped is skipped");
    require(s.lastBackupDate == lastBackup_, "only a finished backup is the last backup");
    require(BackupController::current() == w_.program.controller.get(), "the live controller is known");
}

void Watcher::checkCommands() {
    auto& commands = w_.timeMachine.commands;
    if (commands.empty())
        return;
    const auto starts = std::count(commands.begin(), commands.end(), "tmutil startbackup");
    commands.clear();
    startsAllowed_ -= starts;
    asked_ |= starts > 0;
    require(startsAllowed_ >= 0, "Time Machine is asked once for each request");
    const bool silent = w_.timeMachine.kind == "Network" && w_.network.answeringHosts.empty();
    require(starts == 0 || !silent || toolsAreFaulty() || !w_.timeMachine.name,
            "no backup is started towards a network destination that is silent");
}

/// The program must see in time what truly happens, as long as its tools tell it.
void Watcher::checkAttention() {
    const bool trustworthy = toolsWork_.seconds(!toolsAreFaulty(), now()) > longestFaultSeconds;
    preferencesTell_.seconds(!preferencesAreSilent(), now());
    const bool unseen = trustworthy && w_.timeMachine.running() != state().status.running;
    const double limit = running_ || requestedAt_ ? fastLookSeconds : slowLookSeconds;
    require(unseen_.seconds(unseen, now()) < limit, "what Time Machine does is seen in time");
    if (!logGrew_ && looks_ % 16 != 0)
        return;
    const bool wrong = rawValue(state().health) != expectedHealth();
    require(wrongHealth_.seconds(wrong, now()) < slowLookSeconds, "health follows the facts");
}

void Watcher::checkStall() {
    const TMStatus& status = state().status;
    const auto bytes = status.running && status.phase == "Copying" && status.progress
                           ? std::optional(status.progress->bytes)
                           : std::nullopt;
    if (bytes != copiedBytes_)
        stuck_.forget();
    copiedBytes_ = bytes;
    require(stuck_.seconds(bytes && !state().stalled, now()) < 600 + slowLookSeconds,
            "a copy that hangs is noticed");
}

/// A warning that is neither given nor given lately is due within three refreshes of the history, which come
/// while no backup is on its way.
void Watcher::checkWatchdogs() {
    constexpr double threeRefreshesSeconds = 3.0 * 10 * 40;
    const auto due = [&](const char* kind, bool wrong) {
        const auto last = watchdogs_.find(kind);
        return wrong && !running_ && !requestedAt_ && !verifyingSince_ &&
               (last == watchdogs_.end() || secondsBetween(last->second.at, now()) > 86'400);
    };
    const SimulatedTimeMachine& tm = w_.timeMachine;
    const auto total = static_cast<double>(tm.bytesUsed + tm.bytesAvailable);
    const bool full = static_cast<double>(tm.bytesUsed) >= 0.9 * total;
    require(fullDisk_.seconds(due("Backup disk ", full && !preferencesAreSilent()), now()) <
                threeRefreshesSeconds,
            "the user is told of a full backup disk");
    const bool low = w_.files.homeAvailableBytes.value_or(15'000'000'000) < 15'000'000'000;
    require(fullStartupDisk_.seconds(due("Startup disk is low on space", low), now()) < threeRefreshesSeconds,
            "the user is told of a full startup disk");
    const auto newest = std::max_element(tm.snapshotDates.begin(), tm.snapshotDates.end());
    const bool old = newest != tm.snapshotDates.end() && secondsBetween(*newest, now()) > 172'801;
    require(oldBackup_.seconds(due("No verified backup in ", old && !preferencesAreSilent()), now()) <
                threeRefreshesSeconds,
            "the user is told that backups have become old");
    const bool wrong = state().autoBackupOn != tm.autoBackup && !preferencesAreSilent() && !running_ &&
                       !requestedAt_ && !verifyingSince_;
    require(wrongSwitch_.seconds(wrong, now()) < threeRefreshesSeconds,
            "Time Machine's own switch is followed");
}

/// What is due happens, and soon.
void Watcher::checkPunctuality() {
    const ControllerState& s = state();
    const bool overduePause = s.pausedUntil && *s.pausedUntil < now();
    // A start on the way makes the wait for the next look begin anew.
    require(overduePause_.seconds(overduePause, now()) < 2 * slowLookSeconds, "a pause ends in time");
    if (s.nextFire && !s.deferral && !running_ && !verifyingSince_ && w_.jumps == jumpsAtPlan_)
        require(secondsBetween(*s.nextFire, now()) < 35 + (mayAskForTheDisk() ? longestFaultSeconds : 0),
                "what is planned is begun in time");
    const bool overdue =
        s.nextFire && *s.nextFire < now() && !s.deferral && !running_ && !verifyingSince_ && !requestedAt_;
    require(overdue_.seconds(overdue, now()) < 2 * longestFaultSeconds,
            "what fell due while the machine slept is made up for");
    const double limit = mayAskForTheDisk() ? longestFaultSeconds : 3;
    if (s.deferral && s.deferral == deferral_ && w_.jumps == jumpsAtDeferral_)
        require(secondsBetween(std::max(s.deferral->nextCheck, deferredAt_), now()) < limit,
                "what is deferred is looked at again in time");
    require(!requestedAt_ || w_.jumps != jumpsAtRequest_ ||
                secondsBetween(*requestedAt_, now()) < 60 + longestFaultSeconds,
            "a start that never happens is noticed");
}

void Watcher::checkProspect() {
    const ControllerState& s = state();
    if (s.nextFire || running_ || requestedAt_ || verifyingSince_ || s.deferral)
        return;
    const Calendar calendar = *Calendar::inZone(w_.programZone);
    require(!SchedulingEngine::nextFire(s.schedule, s.lastBackupDate, now(), calendar).date,
            "a schedule that can come to a backup has one planned");
}

void Watcher::checkPlan() {
    const ControllerState& s = state();
    if (!s.nextFire)
        return;
    require(*s.nextFire >= w_.graceEnd, "nothing is planned in the launch grace");
    require(!s.pausedUntil || *s.nextFire >= *s.pausedUntil, "nothing is planned in a pause");
    require(!retryFloor_ || *s.nextFire >= *retryFloor_, "nothing is planned before the retry is due");
    require(!s.skipArmed || !skipped_ || secondsBetween(*skipped_, *s.nextFire) >= 60,
            "what is skipped is not what is planned");
    require(s.nextFire == plan_ || w_.clockMoved || *s.nextFire >= now(), "nothing is planned in the past");
    if (s.nextFire == plan_ && s.schedule == schedule_)
        return;
    constexpr double catchUpSeconds = 121; // after a wake
    require(!plan_ || s.schedule != schedule_ || newPlanExplained_ || secondsBetween(*plan_, now()) < 35 ||
                secondsBetween(now(), *s.nextFire) <= catchUpSeconds,
            "a backup that fell due is not planned away");
    schedule_ = s.schedule;
    const Calendar calendar = *Calendar::inZone(w_.programZone);
    require(*s.nextFire <= latestPlan().value_or(distantFuture),
            "nothing is planned later than the schedule allows");
    require(SchedulingEngine::pushPastBlackouts(*s.nextFire, s.schedule.blackouts, calendar) == s.nextFire,
            "what is planned lies outside every blackout");
    require(!s.deferredFrom || SchedulingEngine::pushPastBlackouts(*s.deferredFrom, s.schedule.blackouts,
                                                                   calendar) == s.nextFire,
            "a moved backup comes right after the blackouts");
}

/// Until when any one of the rules, or a missed backup, lets the next backup wait.
std::optional<Instant> Watcher::latestPlan() const {
    const ControllerState& s = state();
    Instant earliest = std::max(now(), w_.graceEnd);
    Instant last = s.lastBackupDate.value_or(distantPast);
    earliest = std::max({earliest, s.pausedUntil.value_or(earliest), retryFloor_.value_or(earliest)});
    if (s.skipArmed && skipped_) {
        earliest = std::max(earliest, plusSeconds(*skipped_, 60));
        last = std::max(last, *skipped_);
    }
    constexpr double longDayHours = 25; // when the clocks change
    Instant latest = catchUpAt_ ? std::max(earliest, *catchUpAt_) : distantFuture;
    for (const ScheduleRule& rule : s.schedule.rules) {
        if (const auto* interval = std::get_if<IntervalRule>(&rule))
            latest = std::min(
                latest, std::max(earliest, plusSeconds(last, std::clamp(interval->hours, 1.0, 24.0) * 3600)));
        const auto* daily = std::get_if<DailyTimesRule>(&rule);
        if (daily && !daily->times.empty())
            latest = std::min(latest, plusSeconds(earliest, longDayHours * 3600));
        const auto* weekly = std::get_if<WeekdayTimesRule>(&rule);
        if (weekly && !weekly->slots.empty() && !weekly->slots.front().times.empty())
            latest = std::min(latest, plusSeconds(earliest, (6 * 24 + longDayHours) * 3600));
    }
    if (latest == distantFuture)
        return std::nullopt;
    return SchedulingEngine::pushPastBlackouts(latest, s.schedule.blackouts,
                                               *Calendar::inZone(w_.programZone));
}

void Watcher::checkTimers() {
    const SimulatedTime::RunningTimers timers = w_.time.runningTimers();
    require(timers.repeating == 1, "there is one heartbeat");
    require(timers.oneShots.size() <= 3,
            "there is at most one timer each to fire, to look again and to verify");
    const ControllerState& s = state();
    if (s.nextFire && *s.nextFire > plusSeconds(now(), 1) && !s.deferral)
        require(std::any_of(timers.oneShots.begin(), timers.oneShots.end(),
                            [&](Instant due) { return due >= plusSeconds(*s.nextFire, -1); }),
                "what is planned is armed");
    if (s.deferral && !mayAskForTheDisk())
        require(!timers.oneShots.empty(), "what is deferred is looked at again");
}

void Watcher::checkDeferral() {
    const std::optional<DeferralInfo>& d = state().deferral;
    if (!d)
        return;
    require(!d->reasons.empty(), "a deferral has a reason");
    require(d->nextCheck <= d->forceAt, "no look comes after the end of the wait");
    require(state().conditions.hasAnyCondition() || mayAskForTheDisk(), "only conditions defer");
    require(!deferral_ || d->originalDue == deferral_->originalDue || !onlyWaits_,
            "the wait counts from the first due instant");
    if (d == deferral_)
        return;
    const ConditionsConfig& conditions = state().conditions;
    require(d->forceAt == plusSeconds(d->originalDue, conditions.maxDeferralHours * 3600),
            "the wait ends when the settings say");
    require(d->nextCheck <=
                plusSeconds(now(), std::max<double>(static_cast<double>(conditions.recheckMinutes) * 60, 0)),
            "conditions are looked at as often as the settings say");
    require(now() < d->forceAt, "nothing is deferred beyond the end of the wait");
    require(!timeWentForward() || d->originalDue <= now(), "what is deferred is due");
}

void Watcher::checkStore() {
    if (w_.settings.lossRate > 0 || w_.settings.lostAny)
        return;
    const SettingsStore& store = w_.program.store;
    require(store.failureStreak() == failures_, "the failures in a row are stored as they are counted");
    require(store.lastBackupDate() == state().lastBackupDate, "the last backup is stored as it is shown");
    require(!state().nextFire || store.plannedFireDate() == state().nextFire, "what is planned is stored");
    if (looks_ % 64 != 0)
        return;
    require(store.schedule() == state().schedule, "the schedule is stored as it is shown");
    require(store.conditions() == state().conditions, "the conditions are stored as they are shown");
}

} // namespace norvane::simulation
