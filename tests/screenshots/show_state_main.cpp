// show_state NAME [dark]: the panel in one of its states, in a window that works. What the program was asked
// to do is printed, one line each.
#include <QGuiApplication>
#include <QTimer>
#include <cstdio>

#include "platform/linux/icu_formats.h"
#include "tests/screenshots/panel_states.h"
#include "ui/panel.h"

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
        machine_.time.settle();
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

const screenshots::PanelState* stateOf(const std::string& name) {
    for (const screenshots::PanelState& state : screenshots::panelStates())
        if (state.name == name)
            return &state;
    return nullptr;
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    const auto* state = stateOf(arguments.value(1).toStdString());
    if (!state) {
        std::fputs("usage: show_state NAME [dark]\n", stderr);
        return 2;
    }
    SimulatedMachine machine(screenshots::thatMorning);
    SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
    const IcuFormats formats;
    program.formats = &formats;
    state->reach(machine, program);
    machine.time.settle();

    Theme theme(arguments.value(2) == "dark", QColor::fromRgbF(1.0F, 0.42F, 0.1F));
    UiEngine engine(theme, machine.texts);
    Panel panel(
        engine,
        {*program.controller, machine.time, formats, machine.texts, program.tmUtil, program.crashReporter},
        {[] { print("health"); }, [] { print("settings"); }, [] { QGuiApplication::quit(); }});
    panel.toggleAt(QPoint(500, 100));

    Witness witness(machine);
    constexpr int milliseconds = 20;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { witness.look(); });
    timer.start(milliseconds);
    return QGuiApplication::exec();
}
