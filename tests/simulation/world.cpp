#include "tests/simulation/world.h"

namespace norvane::simulation {

namespace {

TimeOfDay randomTime(Random& random) { return {random.whole(0, 23), 15 * random.whole(0, 3)}; }

std::vector<TimeOfDay> randomTimes(Random& random) {
    std::vector<TimeOfDay> times;
    for (auto count = random.whole(0, 3); count > 0; --count)
        times.push_back(randomTime(random));
    return times;
}

ScheduleRule randomRule(Random& random) {
    switch (random.whole(0, 2)) {
    case 0:
        return IntervalRule{random.pick<double>({0.5, 1, 1.5, 2, 4, 6, 12, 24, 48})};
    case 1:
        return DailyTimesRule{randomTimes(random)};
    default:
        break;
    }
    WeekdayTimesRule rule;
    for (auto count = random.whole(0, 4); count > 0; --count)
        rule.slots.push_back(
            {Weekdays::allCases[static_cast<std::size_t>(random.whole(0, 6))], randomTimes(random)});
    return rule;
}

Schedule randomSchedule(Random& random) {
    Schedule schedule;
    for (auto count = random.whole(0, 2); count >= 0; --count)
        schedule.rules.push_back(randomRule(random));
    if (random.chance(0.05))
        schedule.rules.clear();
    for (auto count = random.whole(-1, 3); count > 0; --count) {
        BlackoutWindow window{{}, randomTime(random), randomTime(random)};
        for (const Weekday day : Weekdays::allCases)
            if (random.chance(0.5))
                window.days.insert(day);
        schedule.blackouts.push_back(window);
    }
    return schedule;
}

ConditionsConfig randomConditions(Random& random) {
    if (random.chance(0.2))
        return {}; // no condition at all
    ConditionsConfig conditions = ConditionsConfig::defaultConditions();
    conditions.requireAC = random.chance(0.5);
    conditions.minBatteryPercent = random.chance(0.3) ? random.whole(-5, 90) : 0;
    conditions.deferInLowPowerMode = random.chance(0.2);
    conditions.deferWhileCameraOrMicInUse = random.chance(0.5);
    if (random.chance(0.4))
        conditions.blockedApps = {{"editor", "Editor"}, {"game", "Game"}};
    conditions.maxDeferralHours = random.pick<double>({0, 0.5, 1, 4, 12, 24});
    conditions.recheckMinutes = random.pick<std::int64_t>({1, 5, 15, 60});
    if (random.chance(0.05)) { // stored by hand: a look every second, so not for long
        conditions.maxDeferralHours = 0.1;
        conditions.recheckMinutes = random.pick<std::int64_t>({-3, 0});
    }
    if (random.chance(0.3))
        conditions.maxLoadPerCore = random.between(0, 2);
    if (random.chance(0.5))
        conditions.requireDestinationPresent = random.chance(0.7);
    return conditions;
}

void flipMachineState(World& w) {
    switch (w.random.whole(0, 7)) {
    case 0:
        w.measurements.power.onAC = !w.measurements.power.onAC;
        break;
    case 1:
        w.measurements.power.batteryPercent = w.random.whole(0, 100);
        break;
    case 2:
        w.measurements.power.lowPowerMode = !w.measurements.power.lowPowerMode;
        break;
    case 3:
        w.measurements.media.camera = !w.measurements.media.camera;
        break;
    case 4:
        w.measurements.media.microphone = !w.measurements.media.microphone;
        break;
    case 5:
        w.measurements.media.screen = !w.measurements.media.screen;
        break;
    case 6:
        w.measurements.load = w.random.between(0, 3);
        break;
    default:
        if (!w.measurements.applications.erase("editor"))
            w.measurements.applications.insert("editor");
    }
}

/// The folder that the disk was mounted on may stay, empty.
void plugTheDisk(World& w) {
    const std::string& folder = w.timeMachine.mountPoint;
    if (w.files.mountPoints.erase(folder) == 0) {
        w.files.mountPoints.insert(folder);
        w.files.paths.insert(folder);
    } else if (w.random.chance(0.5)) {
        w.files.paths.erase(folder);
    }
    w.timeMachine.mounted = w.files.mountPoints.contains(folder);
}

void chooseAnotherDisk(World& w) {
    std::string& folder = w.timeMachine.mountPoint;
    w.files.mountPoints.erase(folder);
    w.files.paths.erase(folder);
    folder = folder == "/Volumes/Backup" ? "/Volumes/Other" : "/Volumes/Backup";
    w.files.mountPoints.insert(folder);
    w.files.paths.insert(folder);
    w.timeMachine.mounted = true;
    w.otherDiskChosen = true;
}

/// How Time Machine behaves from now on; most of the time it behaves.
void changeTimeMachine(World& w) {
    SimulatedTimeMachine& tm = w.timeMachine;
    const auto seldom = [&w] { return w.random.chance(0.12); };
    tm.backupSeconds = w.random.exponential(600) + 1;
    tm.name = w.random.chance(0.03) ? std::nullopt : std::optional<std::string>("Backup Disk");
    tm.autoBackup = w.random.chance(0.5);
    tm.phase = seldom() ? "ThinningPreBackup" : "Copying";
    tm.startsBackups = !seldom();
    tm.leavesSnapshots = !seldom();
    tm.snapshotDelaySeconds = seldom() ? w.random.between(0, 60) : 0;
    if (seldom())
        tm.secondSnapshotDates =
            tm.secondSnapshotDates ? std::nullopt : std::optional(std::vector<Instant>{});
    tm.usesSecondDestination = w.random.chance(0.5);
    tm.stallsAt = seldom() ? std::optional(w.random.whole(0, tm.backupBytes)) : std::nullopt;
    tm.startsWith =
        seldom() ? std::optional(CommandResult{static_cast<std::int32_t>(w.random.whole(1, 99)), "", "no"})
                 : std::nullopt;
    tm.toolsMissing = w.random.chance(0.02);
    tm.ignoresStop = seldom();
    tm.stopSeconds = w.random.chance(0.3) ? w.random.between(0, 300) : 0;
    tm.preferencesReadable = !seldom();
    tm.result = seldom() ? w.random.whole(-5, 50) : 0;
    tm.messageParameters = seldom() ? std::vector<std::string>{"Documents"} : std::vector<std::string>{};
    tm.kind = seldom() ? "Network" : "Local";
    tm.url = tm.kind == "Network" ? "smb://nas.local/TM" : "";
    tm.bytesAvailable = seldom() ? 5 : 600'000'000'000;
    w.network.answeringHosts = seldom() ? std::set<std::string>{} : std::set<std::string>{"nas.local:445"};
    w.tools.faultRate = seldom() ? w.random.between(0, 0.5) : 0;
}

void setClock(World& w, double bySeconds) {
    w.time.setWallClock(plusSeconds(w.time.now(), bySeconds));
    w.clockMoved = true;
    ++w.jumps;
    w.stepsBack += bySeconds < 0 ? 1 : 0;
    if (w.systemEvents.handlers)
        w.systemEvents.handlers->clockChanged();
}

void stepTheClock(World& w) {
    setClock(w, w.random.between(-1, 1) * w.random.pick<double>({1, 600, 7200, 86400}));
}

/// So long and so often that the machine is awake for some seven hours a day, as people's machines are. The
/// clock that runs meanwhile is a little off.
void sleepAWhile(World& w) {
    if (!w.sleeps)
        return;
    ++w.jumps;
    w.time.sleep(w.random.exponential(20 * 3600));
    w.wokeAt = w.time.now();
    if (w.systemEvents.handlers)
        w.systemEvents.handlers->didWake();
    if (w.random.chance(0.3))
        setClock(w, w.random.between(-1, 1));
}

/// The program keeps the zone it was started in; the next start is in the new one.
void travel(World& w) {
    w.machineZone = w.random.pick<std::string>({"Europe/Berlin", "America/New_York", "Australia/Lord_Howe",
                                                "Pacific/Apia", "Africa/Cairo", "America/Sao_Paulo",
                                                "Asia/Kathmandu", "UTC"});
}

/// Some of what one deed stores arrives, the rest does not; the log and the screen never hear of it.
void dieWhileStoring(World& w) {
    const auto posted = w.notifications.posted.size();
    w.settings.writesLeft = w.random.whole(0, 2);
    switch (w.random.whole(0, 2)) {
    case 0:
        w.program.controller->setSchedule(randomSchedule(w.random));
        break;
    case 1:
        w.program.controller->pauseUntilTomorrow();
        break;
    default:
        w.program.controller->requestBackup(false);
    }
    w.notifications.posted.resize(posted);
    w.logFile.text.clear();
    w.startProgram();
}

/// By a hand, an old version or a failing disk.
void damageStoredSettings(World& w) {
    const Instant someDate = plusSeconds(w.time.now(), w.random.between(-40, 40) * 86'400);
    const auto damage = w.random.pick<std::pair<std::string, PropertyList>>(
        {{"schedule.v1", {PropertyListData{"{\"rules\":"}}},
         {"schedule.v1", {std::string("daily")}},
         {"conditions.v1", {PropertyListData{"\xFF"}}},
         {"lastBackupDate.v1", {someDate}},
         {"lastBackupDate.v1", {true}},
         {"plannedFireDate.v1", {someDate}},
         {"plannedFireDate.v1", {PropertyList::Array{}}},
         {"launchGraceMinutes.v1", {std::int64_t{-40}}},
         {"failureStreak.v1", {std::int64_t{1} << 40}},
         {"failureStreak.v1", {std::string("many")}}});
    w.defaults.set(damage.first, damage.second);
    w.startProgram();
}

} // namespace

World::World(std::uint64_t seed)
    : SimulatedMachine(std::chrono::sys_days{std::chrono::year{2020} / 1 / 1} +
                       std::chrono::hours{Random(seed).whole(0, 24 * 365 * 10)}),
      random(seed), sleeps(seed % 100 != 0) {
    files.mountPoints.insert(timeMachine.mountPoint);
    time.disturb([this] { return random.fraction(); }, 0.5);
    program.store.setSchedule(randomSchedule(random));
    travel(*this);
    startProgram();
}

void World::startProgram() {
    program.controller.reset();
    time.dropBackgroundWork();
    settings.writesLeft.reset();
    settings.lostAny = settings.lossRate > 0;
    programZone = machineZone;
    startedAt = time.now();
    ++starts;
    jumps = 0;
    stepsBack = 0;
    otherDiskChosen = false;
    graceEnd = plusSeconds(startedAt, static_cast<double>(program.store.launchGraceMinutes()) * 60);
    plannedBefore = program.store.plannedFireDate();
    program.start(programZone);
}

const std::vector<Happening>& World::happenings() {
    static const std::vector<Happening> all = {
        {"the machine sleeps", 6, sleepAWhile},
        {"the machine's state changes", 3, flipMachineState},
        {"Time Machine changes its ways", 12, changeTimeMachine},
        {"a stalled copy goes on", 2, [](World& w) { w.timeMachine.stallsAt.reset(); }},
        {"the disk comes or goes", 60, plugTheDisk},
        {"another backup disk is chosen", 300, chooseAnotherDisk},
        {"the startup disk fills or empties", 300,
         [](World& w) {
             w.files.homeAvailableBytes =
                 w.random.whole(0, 1) * 500'000'000'000 + w.random.whole(0, 20'000'000'000);
         }},
        {"Time Machine starts by itself", 80, [](World& w) { w.timeMachine.begin(); }},
        {"the user presses Back Up Now", 40,
         [](World& w) {
             w.userAsked = true;
             w.program.controller->requestBackup(false);
         }},
        {"the user presses Stop", 80, [](World& w) { w.program.controller->stopBackup(); }},
        {"the user pauses", 90,
         [](World& w) {
             w.program.controller->pause(plusSeconds(w.time.now(), w.random.exponential(7200)));
         }},
        {"the user pauses until tomorrow", 200, [](World& w) { w.program.controller->pauseUntilTomorrow(); }},
        {"the user resumes", 100, [](World& w) { w.program.controller->resume(); }},
        {"the user skips", 70, [](World& w) { w.program.controller->skipNext(); }},
        {"the user dismisses", 70, [](World& w) { w.program.controller->dismissDeferral(); }},
        {"the user edits the schedule", 90,
         [](World& w) { w.program.controller->setSchedule(randomSchedule(w.random)); }},
        {"the user edits the conditions", 60,
         [](World& w) { w.program.controller->setConditions(randomConditions(w.random)); }},
        {"the grace is edited", 300,
         [](World& w) { w.program.store.setLaunchGraceMinutes(w.random.whole(-2, 30)); }},
        {"the clock steps", 200, stepTheClock},
        {"the program restarts", 60, [](World& w) { w.startProgram(); }},
        {"the program is killed while it stores", 200, dieWhileStoring},
        {"stored settings are damaged", 400, damageStoredSettings},
        {"the user travels", 300, travel},
        {"settings get lossy or well", 400,
         [](World& w) { w.settings.lossRate = w.settings.lossRate > 0 ? 0 : w.random.between(0, 0.3); }},
        {"a crash report appears", 500,
         [](World& w) {
             w.files.folders["/reports"] = {{"Norvane-" + logTimestamp(w.time.now()) + ".ips", w.time.now()}};
         }},
    };
    return all;
}

} // namespace norvane::simulation
