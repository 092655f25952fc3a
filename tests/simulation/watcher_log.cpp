// Rules about what the program logs.
#include <algorithm>
#include <array>

#include "tests/simulation/watcher.h"

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

/// After the first failure in a row, the second, and so on; the last one holds for all that follow.
constexpr std::array<double, 5> retryDelays = {900, 1800, 3600, 7200, 14400};

/// For the log alone; every other line is also what the user sees.
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

void Watcher::readLog() {
    std::string& text = w_.logFile.text;
    if (text.empty())
        return;
    require(text.back() == '\n', "every line of the log is whole");
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        const std::string line = text.substr(start, end - start);
        lastLines_.push_back(line);
        if (lastLines_.size() > keptLines)
            lastLines_.pop_front();
        readLine(line);
        start = end + 1;
    }
    text.clear();
    require(state().lastEvent == shown_, "the last event that the user cares about is shown");
}

void Watcher::readLine(std::string_view line) {
    require(line.starts_with(logTimestamp(now()) + " "), "every line carries the moment it was written");
    if (line.size() < stampLength)
        return;
    const std::string_view message = line.substr(stampLength);
    onlyWaits_ &= message.starts_with("Waiting ");
    newPlanExplained_ |=
        !beginsWithAny(message, std::array<std::string_view, 3>{"Next backup scheduled for ",
                                                                "Backup health:", "Timer gap:"});
    if (!beginsWithAny(message, silentPrefixes))
        shown_ = message;
    noteRequest(message);
    noteRun(message);
    noteEnd(message);
    noteStall(message);
    notePlan(message);
    noteWait(message);
    if (beginsWithAny(message, failurePrefixes))
        noteFailure(message);
    if (message.starts_with("Crash log from"))
        ++expectedAlerts_;
}

void Watcher::noteRequest(std::string_view message) {
    if (message.starts_with("Scheduled fire while") || message.starts_with("Back Up Now ignored")) {
        catchUpAt_.reset();
        require(running_, "a request is passed over only while a backup runs");
    }
    const bool scheduled = message == "Scheduled backup requested";
    if (!scheduled && message != "Manual backup requested")
        return;
    require(!running_, "no backup is requested while one runs");
    require(scheduled || w_.userAsked, "a manual backup is one that the user asked for");
    require(!state().deferral, "a requested backup is no longer deferred");
    if (scheduled) {
        require(!state().pausedUntil || *state().pausedUntil <= now(),
                "no scheduled backup starts during a pause");
        require(!timeWentForward() || now() >= w_.graceEnd, "no scheduled backup starts in the launch grace");
        require(!skipped_ || !timeWentForward() || secondsBetween(*skipped_, now()) >= 60,
                "a skipped backup does not start");
        require(deferral_ || !timeWentForward() || !retryFloor_ || now() >= *retryFloor_,
                "no scheduled backup starts before the retry is due");
    }
    require(!state().nextFire && !state().deferredFrom, "nothing is planned once a backup is requested");
    checkRequest(scheduled);
    requestedAt_ = now();
    asked_ = false;
    jumpsAtRequest_ = w_.jumps;
    unseen_.forget();
    retryFloor_.reset();
    skipped_.reset();
    catchUpAt_.reset();
    ++startsAllowed_;
}

/// What must forbid a backup, by the truth of the machine.
void Watcher::checkRequest(bool scheduled) {
    require(!scheduled || !conditionHolds() || overruledAt_ == now(),
            "no scheduled backup starts against a condition before the end of the wait");
    require(w_.files.homeAvailableBytes.value_or(10'000'000'000) >= 10'000'000'000,
            "no backup starts without room on the startup disk");
    require(!diskIsKnown_ || !state().destinationName || !diskIsGone(), "no backup starts without its disk");
}

void Watcher::noteRun(std::string_view message) {
    if (message == "Backup started") {
        require(!running_, "a backup that runs does not start");
        running_ = true;
        unseen_.forget();
        startedAt_ = now();
        catchUpAt_.reset();
        requestedAt_.reset();
        verifyingSince_.reset();
    } else if (message == "Verifying backup…" || message == "Backup stopped") {
        require(running_, "only a backup that ran ends");
        running_ = false;
        unseen_.forget();
        const double sinceStop = stopRequestedAt_ ? secondsBetween(*stopRequestedAt_, now()) : 180;
        newSnapshotTold_.forget();
        if (message == "Verifying backup…") {
            verifyingSince_ = now();
            require(sinceStop >= 180, "a backup that the user stopped is not verified");
        } else {
            require(sinceStop < 180, "stopped means: within three minutes of the user's word");
        }
        stopRequestedAt_.reset();
    } else if (message == "Stop requested") {
        stopRequestedAt_ = now();
    }
}

void Watcher::noteEnd(std::string_view message) {
    if (!message.starts_with("Backup finished"))
        return;
    require(verifyingSince_.has_value(), "a backup is verified before it is finished");
    verifyingSince_.reset();
    failures_ = 0;
    require(state().health == BackupHealth::ok || w_.settings.lostAny,
            "health is well after a finished backup");
    require(state().lastBackupDate == now() || w_.settings.lostAny, "a finished backup is the last backup");
    lastBackup_ = state().lastBackupDate;
    if (message.ends_with("snapshot verified"))
        require(newSnapshotIsTold(120), "verified means: there is a snapshot of this backup");
    else
        require(preferencesTell_.seconds(!preferencesAreSilent(), now()) < longestFaultSeconds,
                "a backup finishes unverified only when Time Machine's preferences tell nothing");
}

/// On any destination.
bool Watcher::newSnapshotIsTold(double atMostBeforeStart) const {
    if (!startedAt_)
        return false;
    const Instant earliest = plusSeconds(*startedAt_, -atMostBeforeStart);
    const auto isNew = [earliest](Instant date) { return date >= earliest; };
    const auto& dates = w_.timeMachine.snapshotDates;
    const auto& others = w_.timeMachine.secondSnapshotDates;
    return std::any_of(dates.begin(), dates.end(), isNew) ||
           (others && std::any_of(others->begin(), others->end(), isNew));
}

bool Watcher::preferencesAreSilent() const {
    return toolsAreFaulty() || !w_.timeMachine.preferencesReadable || !w_.timeMachine.name;
}

void Watcher::noteStall(std::string_view message) {
    if (message.starts_with("Backup appears stalled")) {
        require(running_ && state().status.phase == "Copying", "only a running copy stalls");
        require(!timeWentForward() || secondsBetween(*startedAt_, now()) >= 600, "a stall takes ten minutes");
        ++expectedAlerts_;
    } else if (message == "Backup progress resumed") {
        require(running_ && stalled_, "only a stalled copy resumes");
    }
}

void Watcher::noteFailure(std::string_view message) {
    failures_ = failures_ + 1;
    const auto known = static_cast<std::int64_t>(retryDelays.size());
    const auto nth = static_cast<std::size_t>(std::clamp<std::int64_t>(failures_, 1, known)) - 1;
    retryFloor_ = plusSeconds(now(), retryDelays.at(nth));
    ++expectedAlerts_;
    require(state().health != BackupHealth::ok, "health is not well after a failure");
    require(failures_ < 3 || state().health == BackupHealth::critical,
            "three failures in a row are critical");
    catchUpAt_.reset();
    if (message.starts_with("Startup disk"))
        require(w_.files.homeAvailableBytes.value_or(10'000'000'000) < 10'000'000'000,
                "only too little room on the startup disk is called too little");
    if (message.starts_with("Backup disk"))
        require(diskIsGone() || (w_.otherDiskChosen && (toolsAreFaulty() || !w_.timeMachine.name)),
                "only a disk that is gone is called gone");
    if (message.starts_with("Backup never started")) {
        require(requestedAt_ && secondsBetween(*requestedAt_, now()) > 60, "a start is waited for a minute");
        require(asked_ || toolsWork_.seconds(!toolsAreFaulty(), now()) <= longestFaultSeconds,
                "Time Machine is asked for each requested backup");
    }
    if (message.starts_with("Backup ended without")) {
        require(verifyingSince_ && (!timeWentForward() || secondsBetween(*verifyingSince_, now()) >= 20),
                "a snapshot is looked for during twenty seconds");
        constexpr double answerSeconds = 3; // on its way to the program
        require(newSnapshotTold_.seconds(newSnapshotIsTold(surelyNewSeconds), now()) < answerSeconds,
                "a backup fails only while no destination tells of a snapshot");
        verifyingSince_.reset(); // a newer request may still be on its way
    } else if (!message.starts_with("Startup disk") && !message.starts_with("Backup disk")) {
        requestedAt_.reset(); // those two are of a request that came to nothing, maybe beside an earlier one
    }
    const std::string expectedTitle =
        failures_ < 3 ? "Backup failed" : "Backups are failing (" + std::to_string(failures_) + " in a row)";
    const auto& posted = w_.notifications.posted;
    require(std::any_of(posted.begin() + static_cast<std::ptrdiff_t>(alertsSeen_), posted.end(),
                        [&](const auto& alert) { return alert.title == expectedTitle; }),
            "every failure is told, with the right count");
}

void Watcher::notePlan(std::string_view message) {
    if (message.starts_with("Next backup scheduled for ")) {
        const bool newest = state().nextFire && message.ends_with(logTimestamp(*state().nextFire));
        require(!newest || loggedPlan_ != state().nextFire, "a plan is logged only when it changes");
        if (newest)
            loggedPlan_ = state().nextFire;
    } else if (message == "No backup scheduled") {
        loggedPlan_.reset();
    } else if (message.starts_with("Skipping the ")) {
        skipped_ = plan_;
        catchUpAt_.reset();
        require(plan_.has_value(), "only a planned backup is skipped");
    } else if (message.starts_with("Backup was missed")) {
        catchUpAt_ = w_.graceEnd;
    } else if (message.starts_with("Woke past")) {
        catchUpAt_ = plusSeconds(now(), 120);
    } else if (message == "Pause ended") {
        require(pausedUntil_ && *pausedUntil_ <= now(), "a pause ends when its time is over");
    }
}

void Watcher::noteWait(std::string_view message) {
    if (message.starts_with("Waiting ")) {
        require(!running_ && !state().status.running, "a backup waits only while none runs");
        catchUpAt_.reset();
        const bool forTheDisk =
            state().conditions.requireDestinationPresent.value_or(false) && mayAskForTheDisk();
        require(conditionHolds() || forTheDisk, "a backup waits only for a condition that holds");
    } else if (message.starts_with("Max deferral reached")) {
        const double seconds = state().conditions.maxDeferralHours * 3600;
        require(deferral_ ? now() >= plusSeconds(deferral_->originalDue, seconds) : seconds <= 0,
                "conditions are overruled only at the end of the wait");
        overruledAt_ = now();
    }
}

/// Any that the user set, by the truth of the machine.
bool Watcher::conditionHolds() const {
    const ConditionsConfig& set = state().conditions;
    const SimulatedMeasurements& is = w_.measurements;
    const bool power = (set.requireAC && !is.power.onAC) ||
                       (set.minBatteryPercent > 0 &&
                        is.power.batteryPercent.value_or(set.minBatteryPercent) < set.minBatteryPercent) ||
                       (set.deferInLowPowerMode && is.power.lowPowerMode);
    const bool activity =
        set.deferWhileCameraOrMicInUse && (is.media.camera || is.media.microphone || is.media.screen);
    const bool application =
        std::any_of(set.blockedApps.begin(), set.blockedApps.end(),
                    [&](const BlockedApp& app) { return is.applications.contains(app.bundleID); });
    const double mostLoad = set.maxLoadPerCore.value_or(0);
    const bool load = mostLoad > 0 && is.load.value_or(0) > mostLoad;
    const bool disk = set.requireDestinationPresent.value_or(false) && diskIsKnown_ &&
                      state().destinationName && diskIsGone();
    return power || activity || application || load || disk;
}

bool Watcher::diskIsGone() const { return !w_.files.mountPoints.contains(w_.timeMachine.mountPoint); }

/// In other words than the program's.
std::string_view Watcher::expectedHealth() const {
    const std::optional<Instant> last = state().lastBackupDate;
    if (!last || secondsBetween(*last, now()) > 172'800 || failures_ >= 3)
        return "critical";
    return secondsBetween(*last, now()) > 86'400 || failures_ > 0 ? "stale" : "ok";
}

} // namespace norvane::simulation
