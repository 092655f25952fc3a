// show_state NAME [dark]: a window in one of its states, and working: the panel, or by names that begin so
// "health-" and "snapshots-". What the program was asked to do is printed, one line each.
#include <QGuiApplication>
#include <QTimer>
#include <cstdio>

#include "platform/linux/time/icu_formats.h"
#include "tests/screenshots/health_states.h"
#include "tests/screenshots/panel_states.h"
#include "tests/screenshots/snapshots_states.h"
#include "ui/health/health_window.h"
#include "ui/local_snapshots/local_snapshots_window.h"
#include "ui/panel/panel.h"

namespace {

using namespace norvane;

void print(const std::string& line) {
    std::puts(line.c_str());
    std::fflush(stdout);
}

/// Prints what came behind the first `told` entries.
template <class Entries, class Print>
void printNew(const Entries& entries, std::size_t& told, Print printEntry) {
    for (; told < entries.size(); ++told)
        printEntry(entries[told]);
}

/// Tells of everything that reaches the machine from now on.
class Witness {
public:
    explicit Witness(SimulatedMachine& machine)
        : machine_(machine), commands_(machine.timeMachine.commands.size()),
          log_(machine.logFile.text.size()), urls_(machine.workspace.opened.size()),
          emails_(machine.emailComposer.composed.size()) {}

    void look() {
        printNew(machine_.timeMachine.commands, commands_, print);
        printNew(machine_.workspace.opened, urls_, [](const std::string& url) { print("opened " + url); });
        printNew(machine_.emailComposer.composed, emails_,
                 [](const Email& email) { print("e-mail with " + email.attachment); });
        std::fputs(machine_.logFile.text.substr(log_).c_str(), stdout);
        std::fflush(stdout);
        log_ = machine_.logFile.text.size();
    }

private:
    SimulatedMachine& machine_;
    std::size_t commands_;
    std::size_t log_;
    std::size_t urls_;
    std::size_t emails_;
};

/// A machine, and the program on it.
struct Stage {
    Stage() { program.formats = &formats; }

    SimulatedMachine machine{screenshots::thatMorning};
    SimulatedProgram program{machine, machine.timeMachine, machine.defaults};
    const IcuFormats formats;
    Theme theme{QGuiApplication::arguments().value(2) == "dark", QColor::fromRgbF(1.0F, 0.42F, 0.1F)};
    UiEngine engine{theme, machine.texts};
};

/// Until the program is quit. At each look, 50 times a second, this much simulated time passes.
int runProgram(Stage& stage, double secondsPerLook) {
    Witness witness(stage.machine);
    constexpr int milliseconds = 20;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        stage.machine.time.advance(secondsPerLook);
        witness.look();
    });
    timer.start(milliseconds);
    return QGuiApplication::exec();
}

constexpr double slowly = 0.002; // tools answer, but the texts that tell of times stay for minutes

int show(const screenshots::PanelState& state) {
    Stage stage;
    state.reach(stage.machine, stage.program);
    stage.machine.time.settle();
    Panel panel(stage.engine,
                {*stage.program.controller, stage.machine.time, stage.machine.time, stage.formats,
                 stage.machine.texts, stage.program.tmUtil, stage.program.crashReporter},
                {[] { print("health"); }, [] { print("settings"); }, [] { QGuiApplication::quit(); }});
    panel.toggleAt(QPoint(500, 100));
    return runProgram(stage, 0);
}

int show(const screenshots::HealthState& state) {
    Stage stage;
    state.reach(stage.machine, stage.program);
    HealthWindow window(stage.engine, screenshots::healthServices(stage.machine, stage.program),
                        {[] { print("activity"); }, [] { print("snapshots"); }});
    window.open();
    stage.machine.time.advance(state.reads ? 1 : 0);
    if (state.later)
        state.later(stage.machine);
    return runProgram(stage, slowly);
}

int show(const screenshots::SnapshotsState& state) {
    Stage stage;
    state.reach(stage.machine);
    LocalSnapshotsWindow window(stage.engine,
                                screenshots::snapshotsServices(stage.machine, stage.program.tmUtil),
                                {stage.machine.time, stage.machine.time, stage.formats});
    window.open();
    stage.machine.time.advance(1);
    return runProgram(stage, slowly);
}

/// The exit code; none when no state is called so.
template <class State>
std::optional<int> showOneOf(const std::vector<State>& states, const std::string& prefix,
                             const std::string& name) {
    for (const State& state : states)
        if (prefix + state.name == name)
            return show(state);
    return std::nullopt;
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QGuiApplication application(argc, argv);
    const std::string name = QGuiApplication::arguments().value(1).toStdString();
    if (const auto code = showOneOf(screenshots::panelStates(), "", name))
        return *code;
    if (const auto code = showOneOf(screenshots::healthStates(), "health-", name))
        return *code;
    if (const auto code = showOneOf(screenshots::snapshotsStates(), "snapshots-", name))
        return *code;
    std::fputs("usage: show_state NAME [dark]\n", stderr);
    return 2;
}
