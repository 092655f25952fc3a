// panel_benchmark [OPENINGS]: milliseconds from the wish to see the panel to its first frame on the screen.
// The first line is the first opening, which makes the engine and the views; the second the median of the
// later ones.
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "platform/linux/time/icu_formats.h"
#include "tests/screenshots/panel_states.h"
#include "ui/panel/panel.h"

namespace {

using namespace norvane;

QQuickWindow* panelWindow() {
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (auto* panel = qobject_cast<QQuickWindow*>(window))
            return panel;
    return nullptr;
}

double millisecondsUntilFrame(const QElapsedTimer& timer) {
    QEventLoop loop;
    QObject::connect(panelWindow(), &QQuickWindow::frameSwapped, &loop, &QEventLoop::quit,
                     Qt::QueuedConnection);
    loop.exec();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void rest(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    const int openings = argc > 1 ? std::atoi(argv[1]) : 50;
    SimulatedMachine machine(screenshots::thatMorning);
    SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
    const IcuFormats formats;
    program.formats = &formats;
    screenshots::panelStates().front().reach(machine, program);
    constexpr int startUpMilliseconds = 200;
    rest(startUpMilliseconds);

    QElapsedTimer timer;
    timer.start();
    Theme theme(false, QColor::fromRgbF(1.0F, 0.42F, 0.1F));
    UiEngine engine(theme, machine.texts);
    Panel panel(engine,
                {*program.controller, machine.time, machine.time, formats, machine.texts, program.tmUtil,
                 program.crashReporter},
                {});
    panel.showAsWindow();
    std::printf("first %.1f ms\n", millisecondsUntilFrame(timer));

    std::vector<double> later;
    for (int i = 0; i < openings; ++i) {
        panel.hide();
        constexpr int betweenMilliseconds = 50;
        rest(betweenMilliseconds);
        timer.start();
        panel.showAsWindow();
        later.push_back(millisecondsUntilFrame(timer));
    }
    std::sort(later.begin(), later.end());
    std::printf("later %.1f ms, the slowest %.1f ms\n", later[later.size() / 2], later.back());
    return 0;
}
