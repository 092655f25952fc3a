// activity_benchmark LOG MEGABYTES: the Activity tab over an event log of that size, which it writes. Prints
// the first load, the median time in which the tab opens later, the median time of the main thread that a
// refresh after a new line takes, and the memory the process held at most. Run by activity_benchmark.sh.
#include <QEventLoop>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <sys/resource.h>

#include "platform/linux/event_loop/qt_background.h"
#include "platform/linux/files/posix_services.h"
#include "platform/linux/time/icu_formats.h"
#include "tests/screenshots/panel_states.h"
#include "tests/support/simulated_program.h"
#include "ui/settings/settings_window.h"

namespace {

using namespace norvane;

constexpr int repetitions = 20;

double milliseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

void writeLog(const std::string& path, std::size_t megabytes) {
    std::ofstream file(path, std::ios::binary);
    std::string block;
    while (block.size() < 1'000'000)
        block += "2026-03-04 18:50:00 +0000 Backup finished — snapshot verified (12.6 GB in 14 min)\n";
    for (std::size_t i = 0; i < megabytes; ++i)
        file << block;
}

template <class Sender, class Signal>
void waitFor(Sender* sender, Signal signal) {
    QEventLoop loop;
    QObject::connect(sender, signal, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    loop.exec();
}

void rest() {
    constexpr int wait = 150;
    QEventLoop loop;
    QTimer::singleShot(wait, &loop, &QEventLoop::quit);
    loop.exec();
}

template <class Measure>
double median(Measure measure) {
    std::vector<double> values(repetitions);
    std::generate(values.begin(), values.end(), measure);
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    if (argc != 3)
        return EXIT_FAILURE;
    const std::string path = argv[1];
    writeLog(path, std::strtoul(argv[2], nullptr, 10));
    PosixLogFile log(path);

    SimulatedMachine machine(screenshots::thatMorning);
    SimulatedProgram program(machine, machine.timeMachine, machine.defaults);
    const IcuFormats formats;
    program.formats = &formats;
    program.start();
    SimulatedUpdateService::State updates;
    UpdaterViewModel updater(std::make_unique<SimulatedUpdateService>(updates));
    QtBackground background;
    Theme theme(false, brandOrange);
    UiEngine engine(theme, machine.texts);
    NotificationCenter notifications;
    SettingsWindow settings(engine, notifications,
                            {*program.controller, machine.time, machine.time, background, formats,
                             machine.texts, machine.defaults, machine.loginItem, updater,
                             machine.applications, log, machine.workspace},
                            {}, {});
    ActivityList* const activity = settings.model().activity();

    const double start = milliseconds(CLOCK_MONOTONIC);
    settings.openOn(SettingsTab::activity);
    waitFor(activity, &ActivityList::changed);
    std::printf("first load %.0f ms, ", milliseconds(CLOCK_MONOTONIC) - start);
    auto* const window = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().front());
    rest();

    const double opening = median([&] {
        settings.openOn(SettingsTab::general);
        rest();
        const double begin = milliseconds(CLOCK_MONOTONIC);
        settings.openOn(SettingsTab::activity);
        waitFor(window, &QQuickWindow::frameSwapped);
        return milliseconds(CLOCK_MONOTONIC) - begin;
    });
    double drawn = 0;
    const double refresh = median([&] {
        rest();
        log.append("2026-03-04 19:50:00 +0000 Backup started\n");
        const double begin = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        machine.time.advance(5);
        waitFor(activity, &ActivityList::changed);
        const double updated = milliseconds(CLOCK_THREAD_CPUTIME_ID) - begin;
        rest();
        drawn = milliseconds(CLOCK_THREAD_CPUTIME_ID) - begin;
        return updated;
    });
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf(
        "opens in %.1f ms, refresh %.2f ms of the main thread (with drawing, the last: %.1f), at most %ld "
        "MB of memory\n",
        opening, refresh, drawn, usage.ru_maxrss / 1024);
    return EXIT_SUCCESS;
}
