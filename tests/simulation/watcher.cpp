#include "tests/simulation/watcher.h"

#include <algorithm>
#include <array>

#include "controller/planning.h"
#include "scheduler_core/scheduling_engine.h"

namespace norvane::simulation {

namespace {

constexpr std::size_t stampLength = 26;
constexpr std::size_t keptLines = 50;

constexpr std::array<std::string_view, 7> failurePrefixes = {"Startup disk is nearly full",
                                                             "Backup disk \"",
                                                             "Backup drive \"",
                                                             "startbackup exited ",
                                                             "startbackup could not run",
                                                             "Backup never started within 60s",
                                                             "Backup ended without a new snapshot"};

constexpr std::array<std::string_view, 13> silentPrefixes = {
    "——— Launched v",      "First launch:",        "Backup was missed",   "Next backup scheduled for ",
    "No backup scheduled", "Scheduled fire while", "Back Up Now ignored", "Max deferral reached",
    "Woke past",           "System clock changed", "Timer gap:",          "Backup health:",
    "Crash log from"};

template <class Prefixes>
bool beginsWithAny(std::string_view text, const Prefixes& prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](std::string_view p) { return text.starts_with(p); });
}

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
    running_ = false;
    startsAllowed_ = 0;
    failures_ = w_.store.failureStreak();
    require(w_.logFile.text.substr(std::min(stampLength, w_.logFile.text.size()))
                .starts_with("——— Launched v1.0 (pid "),
            "the first line of a start is the launch line");
}

void Watcher::look() {
    ++looks_;
    logGrew_ = !w_.logFile.text.empty();
    readLog();
    checkAlerts();
    checkState();
    if (logGrew_ || state().nextFire != plan_ || state().deferral != deferral_ || looks_ % 256 == 0) {
        checkPlan();
        checkTimers();
        checkDeferral();
        checkStore();
    }
    plan_ = state().nextFire;
    deferral_ = state().deferral;
    w_.clockMoved = false;
    w_.userAsked = false;
}

void Watcher::readLog() {
    std::string& text = w_.logFile.text;
    if (text.empty())
        return;
    require(text.back() == '\n', "every line of the log is whole");
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        const std::string line = text.substr(start, end - start);
        lastLines_.push_back(line);
        if (lastLines_.size() > keptLines)
            lastLines_.pop_front();
        readLine(line);
        start = end + 1;
    }
    text.clear();
}

void Watcher::readLine(std::string_view line) {
    require(line.starts_with(logTimestamp(now()) + " "), "every line carries the moment it was written");
    if (line.size() < stampLength)
        return;
    const std::string_view message = line.substr(stampLength);
    noteRequest(message);
    noteRun(message);
    notePlan(message);
    if (beginsWithAny(message, failurePrefixes))
        noteFailure(message);
    if (message.starts_with("Crash log from"))
        ++expectedAlerts_;
}

void Watcher::noteRequest(std::string_view message) {
    const bool scheduled = message == "Scheduled backup requested";
    if (!scheduled && message != "Manual backup requested")
        return;
    require(!running_, "no backup is requested while one runs");
    require(scheduled || w_.userAsked, "a manual backup is one that the user asked for");
    require(!state().deferral, "a requested backup is no longer deferred");
    if (scheduled) {
        require(!state().pausedUntil || *state().pausedUntil <= now(),
                "no scheduled backup starts during a pause");
        require(w_.jumps > 0 || now() >= w_.graceEnd, "no scheduled backup starts in the launch grace");
        require(!skipped_ || w_.jumps > 0 || now() >= *skipped_, "a skipped backup does not start");
    }
    require(!state().nextFire && !state().deferredFrom, "nothing is planned once a backup is requested");
    requestedAt_ = now();
    retryFloor_.reset();
    skipped_.reset();
    ++startsAllowed_;
}

void Watcher::noteRun(std::string_view message) {
    if (message == "Backup started") {
        require(!running_, "a backup that runs does not start");
        running_ = true;
        startedAt_ = now();
        requestedAt_.reset();
        verifyingSince_.reset();
    } else if (message == "Verifying backup…" || message == "Backup stopped") {
        require(running_, "only a backup that ran ends");
        running_ = false;
        if (message == "Verifying backup…")
            verifyingSince_ = now();
        else
            require(stopRequestedAt_ && secondsBetween(*stopRequestedAt_, now()) < 180,
                    "stopped means: within three minutes of the user's word");
        stopRequestedAt_.reset();
    } else if (message == "Stop requested") {
        stopRequestedAt_ = now();
    } else if (message.starts_with("Backup finished")) {
        require(verifyingSince_.has_value(), "a backup is verified before it is finished");
        verifyingSince_.reset();
        failures_ = 0;
        require(state().health == BackupHealth::ok || w_.defaults.lostAny,
                "health is well after a finished backup");
        require(state().lastBackupDate == now() || w_.defaults.lostAny,
                "a finished backup is the last backup");
        const auto& dates = w_.timeMachine.snapshotDates;
        require(!message.ends_with("snapshot verified") ||
                    std::any_of(dates.begin(), dates.end(),
                                [&](Instant date) { return secondsBetween(*startedAt_, date) > -121; }),
                "verified means: there is a snapshot of this backup");
    } else if (message.starts_with("Backup appears stalled")) {
        require(running_ && state().status.phase == "Copying", "only a running copy stalls");
        require(w_.jumps > 0 || secondsBetween(*startedAt_, now()) >= 600, "a stall takes ten minutes");
        ++expectedAlerts_;
    }
}

void Watcher::noteFailure(std::string_view message) {
    failures_ = failures_ + 1;
    retryFloor_ = plusSeconds(now(), retryDelaySeconds(failures_));
    ++expectedAlerts_;
    require(state().health != BackupHealth::ok, "health is not well after a failure");
    require(failures_ < 3 || state().health == BackupHealth::critical,
            "three failures in a row are critical");
    if (message.starts_with("Backup never started"))
        require(requestedAt_ && secondsBetween(*requestedAt_, now()) > 60, "a start is waited for a minute");
    if (message.starts_with("Backup ended without")) {
        require(verifyingSince_ && (w_.jumps > 0 || secondsBetween(*verifyingSince_, now()) >= 20),
                "a snapshot is looked for during twenty seconds");
        verifyingSince_.reset();
    }
    requestedAt_.reset();
    const std::string expectedTitle =
        failures_ < 3 ? "Backup failed" : "Backups are failing (" + std::to_string(failures_) + " in a row)";
    const auto& posted = w_.notifications.posted;
    require(std::any_of(posted.begin() + static_cast<std::ptrdiff_t>(alertsSeen_), posted.end(),
                        [&](const auto& alert) { return alert.title == expectedTitle; }),
            "every failure is told, with the right count");
}

void Watcher::notePlan(std::string_view message) {
    if (!beginsWithAny(message, silentPrefixes) && message != state().lastEvent)
        require(beginsWithAny(message, failurePrefixes) || message == "Verifying backup…" ||
                    state().lastEvent != "Launched",
                "what the user should know is shown");
    if (message.starts_with("Next backup scheduled for ")) {
        const bool newest = state().nextFire && message.ends_with(logTimestamp(*state().nextFire));
        require(!newest || loggedPlan_ != state().nextFire, "a plan is logged only when it changes");
        if (newest)
            loggedPlan_ = state().nextFire;
    } else if (message == "No backup scheduled") {
        loggedPlan_.reset();
    } else if (message.starts_with("Skipping the ")) {
        skipped_ = plan_;
        require(plan_.has_value(), "only a planned backup is skipped");
    }
}

void Watcher::checkAlerts() {
    const auto& posted = w_.notifications.posted;
    for (; alertsSeen_ < posted.size(); ++alertsSeen_) {
        const std::string& title = posted[alertsSeen_].title;
        const std::string kind = title.substr(0, title.find_first_of("0123456789"));
        if (kind != "No verified backup in " && kind != "Backup disk " &&
            kind != "Startup disk is low on space") {
            --expectedAlerts_;
            continue;
        }
        const auto last = watchdogs_.find(kind);
        require(last == watchdogs_.end() || w_.defaults.lostAny ||
                    secondsBetween(last->second, now()) > 86'400,
                "the same warning comes at most once a day");
        require(kind != "No verified backup in " || !state().status.running,
                "no warning of old backups while one runs");
        watchdogs_[kind] = now();
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
    const auto starts =
        std::count(w_.timeMachine.commands.begin(), w_.timeMachine.commands.end(), "tmutil startbackup");
    startsAllowed_ -= starts;
    w_.timeMachine.commands.clear();
    require(startsAllowed_ >= 0, "Time Machine is asked once for each request");
    require(BackupController::current() == w_.controller.get(), "the live controller is known");
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
    schedule_ = s.schedule;
    const Calendar calendar = *Calendar::inZone(w_.zone);
    require(SchedulingEngine::pushPastBlackouts(*s.nextFire, s.schedule.blackouts, calendar) == s.nextFire,
            "what is planned lies outside every blackout");
    require(!s.deferredFrom || SchedulingEngine::pushPastBlackouts(*s.deferredFrom, s.schedule.blackouts,
                                                                   calendar) == s.nextFire,
            "a moved backup comes right after the blackouts");
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
    if (s.deferral)
        require(!timers.oneShots.empty(), "what is deferred is looked at again");
}

void Watcher::checkDeferral() {
    const std::optional<DeferralInfo>& d = state().deferral;
    if (!d)
        return;
    require(!d->reasons.empty(), "a deferral has a reason");
    require(d->nextCheck <= d->forceAt, "no look comes after the end of the wait");
    require(state().conditions.hasAnyCondition(), "only conditions defer");
    require(!deferral_ || d->originalDue == deferral_->originalDue || logGrew_,
            "the wait counts from the first due instant");
    if (d == deferral_)
        return;
    const ConditionsConfig& conditions = state().conditions;
    require(d->forceAt == plusSeconds(d->originalDue, conditions.maxDeferralHours * 3600),
            "the wait ends when the settings say");
    require(d->nextCheck <=
                plusSeconds(now(), std::max<double>(static_cast<double>(conditions.recheckMinutes) * 60, 0)),
            "conditions are looked at as often as the settings say");
    require(w_.clockMoved || w_.jumps > 0 || now() < d->forceAt,
            "nothing is deferred beyond the end of the wait");
    require(w_.jumps > 0 || d->originalDue <= now(), "what is deferred is due");
}

void Watcher::checkStore() {
    if (w_.defaults.lossRate > 0 || w_.defaults.lostAny)
        return;
    require(w_.store.failureStreak() == failures_, "the failures in a row are stored as they are counted");
    require(w_.store.lastBackupDate() == state().lastBackupDate, "the last backup is stored as it is shown");
    require(!state().nextFire || w_.store.plannedFireDate() == state().nextFire, "what is planned is stored");
    if (looks_ % 64 != 0)
        return;
    require(w_.store.schedule() == state().schedule, "the schedule is stored as it is shown");
    require(w_.store.conditions() == state().conditions, "the conditions are stored as they are shown");
}

} // namespace norvane::simulation
