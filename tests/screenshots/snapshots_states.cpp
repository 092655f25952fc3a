#include "tests/screenshots/snapshots_states.h"

namespace norvane::screenshots {

namespace {

using Machine = SimulatedMachine;
using Model = LocalSnapshotsViewModel;

/// The states begin on a Thursday morning, 2026-03-05 9:00 in UTC.
void keepFive(Machine& machine) {
    machine.timeMachine.localSnapshots = {"2026-03-02-065930", "2026-03-03-065930", "2026-03-03-175930",
                                          "2026-03-04-035930", "2026-03-05-055930"};
    machine.files.startupVolumeName = "Linux";
}

/// Backups by which all but the two newest are covered.
void coverThree(Machine& machine) {
    keepFive(machine);
    const Instant monday = std::chrono::sys_days{std::chrono::year{2026} / 3 / 2} + std::chrono::hours{8};
    for (const double hours : {0.0, 25.0, 36.0})
        machine.timeMachine.snapshotDates.push_back(plusSeconds(monday, hours * 3600));
}

void coverAll(Machine& machine) {
    coverThree(machine);
    for (const double hours : {45.0, 72.5})
        machine.timeMachine.snapshotDates.push_back(
            plusSeconds(machine.timeMachine.snapshotDates.front(), hours * 3600));
}

void withoutDestination(Machine& machine) {
    keepFive(machine);
    machine.timeMachine.name.reset();
}

void keepMany(Machine& machine) {
    coverThree(machine);
    for (const char* hour : {"06", "07", "08", "09", "10", "11", "12", "13", "14"})
        machine.timeMachine.localSnapshots.push_back(std::string("2026-03-04-") + hour + "5930");
}

void deleteAll(Machine& machine, Model& model) {
    model.askToDeleteAll();
    model.confirm();
    machine.time.settle();
}

} // namespace

const std::vector<SnapshotsState>& snapshotsStates() {
    static const std::vector<SnapshotsState> states = {
        {"partly-covered", coverThree},
        {"covered", coverAll},
        {"unknown", withoutDestination},
        {"many", keepMany},
        {"empty", [](Machine&) {}},
        {"loading", coverAll, false},
        {"busy", coverThree, true, deleteAll},
        {"error",
         [](Machine& m) {
             coverThree(m);
             m.timeMachine.undeletable = {"2026-03-03-065930", "2026-03-05-055930"};
         },
         true,
         [](Machine& m, Model& model) {
             deleteAll(m, model);
             m.time.advance(1);
         }},
        {"delete-one-covered", coverThree, true,
         [](Machine&, Model& model) { model.askToDelete("2026-03-03-065930"); }},
        {"delete-one-only-local", coverThree, true,
         [](Machine&, Model& model) { model.askToDelete("2026-03-05-055930"); }},
        {"delete-all-covered", coverAll, true, [](Machine&, Model& model) { model.askToDeleteAll(); }},
        {"delete-all-uncovered", coverThree, true, [](Machine&, Model& model) { model.askToDeleteAll(); }},
    };
    return states;
}

LocalSnapshotsServices snapshotsServices(SimulatedMachine& machine, const TMUtil& tmUtil) {
    return {machine.time, tmUtil, machine.files, machine.texts, [] { return *Calendar::inZone("UTC"); }};
}

} // namespace norvane::screenshots
