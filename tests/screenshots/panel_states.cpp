#include "tests/screenshots/panel_states.h"

namespace norvane::screenshots {

namespace {

constexpr double minute = 60;
constexpr double hour = 60 * minute;

using Machine = SimulatedMachine;
using Program = SimulatedProgram;

/// One backup a day in the evening, the last one yesterday.
void settle(Machine& machine, Program& program) {
    program.store.setSchedule({{DailyTimesRule{{{12, 30}, {20, 0}}}}, {}});
    program.store.setLastBackupDate(plusSeconds(machine.time.now(), -14 * hour));
    program.start();
    machine.time.advance(10 * minute);
}

/// The setup guide was finished a moment ago.
void beNew(Machine& machine, Program& program) {
    program.start();
    machine.time.advance(10 * minute);
}

void backUp(Machine& machine, Program& program) {
    machine.timeMachine.backupBytes = 12'600'000'000;
    machine.timeMachine.backupSeconds = 12 * minute;
    program.controller->requestBackup(false);
    machine.time.advance(5 * minute);
}

void run(Machine& machine, Program& program) {
    settle(machine, program);
    backUp(machine, program);
}

void fail(Machine& machine, Program& program, int times) {
    settle(machine, program);
    machine.timeMachine.leavesSnapshots = false;
    for (int i = 0; i < times; ++i) {
        program.controller->requestBackup(false);
        machine.time.advance(10 * minute);
    }
}

void wait(Machine& machine, Program& program) {
    settle(machine, program);
    ConditionsConfig conditions = ConditionsConfig::defaultConditions();
    conditions.requireAC = true;
    conditions.deferWhileCameraOrMicInUse = true;
    program.controller->setConditions(conditions);
    machine.measurements.power = {false, 61, false};
    machine.measurements.media.camera = true;
    machine.time.advance(3.6 * hour);
}

} // namespace

const std::vector<PanelState>& panelStates() {
    static const std::vector<PanelState> states = {
        {"new", beNew},
        {"new-running",
         [](Machine& m, Program& p) {
             beNew(m, p);
             backUp(m, p);
         }},
        {"scheduled", settle},
        {"running", run},
        {"running-unknown",
         [](Machine& m, Program& p) {
             run(m, p);
             m.timeMachine.phase = "FindingChanges";
             m.timeMachine.tellsProgress = false;
             m.time.advance(minute);
         }},
        {"stalled",
         [](Machine& m, Program& p) {
             m.timeMachine.stallsAt = 4'100'000'000;
             run(m, p);
             m.time.advance(20 * minute);
         }},
        {"attention", [](Machine& m, Program& p) { fail(m, p, 1); }},
        {"failing", [](Machine& m, Program& p) { fail(m, p, 3); }},
        {"waiting", wait},
        {"paused",
         [](Machine& m, Program& p) {
             settle(m, p);
             p.controller->pause(plusSeconds(m.time.now(), hour));
         }},
        {"idle",
         [](Machine& m, Program& p) {
             settle(m, p);
             p.controller->setSchedule({});
         }},
        {"catch-up",
         [](Machine& m, Program& p) {
             p.store.setPlannedFireDate(plusSeconds(m.time.now(), -hour));
             p.store.setSchedule({{DailyTimesRule{{{20, 0}}}}, {}});
             p.store.setLastBackupDate(plusSeconds(m.time.now(), -14 * hour));
             p.start();
             m.time.advance(2 * minute);
         }},
        {"skip-armed",
         [](Machine& m, Program& p) {
             settle(m, p);
             p.controller->skipNext();
         }},
        {"blackout",
         [](Machine& m, Program& p) {
             settle(m, p);
             Schedule schedule = p.state().schedule;
             schedule.blackouts = {{{Weekday::thursday}, {12, 0}, {14, 0}}};
             p.controller->setSchedule(schedule);
         }},
        {"crash-notice",
         [](Machine& m, Program& p) {
             m.files.folders["/reports"] = {{"Norvane-2026-03-05-075900.ips", m.time.now()}};
             settle(m, p);
         }},
        {"automatic-on",
         [](Machine& m, Program& p) {
             m.timeMachine.autoBackup = true;
             settle(m, p);
         }},
        {"quit", settle, true},
    };
    return states;
}

} // namespace norvane::screenshots
