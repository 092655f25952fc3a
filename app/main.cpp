// The entry point: one instance, one event loop.
#include <QGuiApplication>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>

#include "app/dbus_instances.h"
#include "app/disk_image_alert.h"
#include "app/norvane_app.h"
#include "platform/linux/bus/bus_probe.h"
#include "platform/linux/crashes/crash_handler.h"
#include "platform/linux/crashes/finished_crash_reports.h"
#include "platform/linux/desktop/activation_token.h"
#include "platform/linux/files/user_folders.h"
#include "platform/linux/processes/program_place.h"

namespace {

/// Without a display the program still schedules; it only shows nothing. Qt's own choice would abort when the
/// variables name a server that is gone or a kind that is not installed.
void allowRunningWithoutDisplay() {
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return;
    QByteArray platforms = "offscreen";
    if (!qEnvironmentVariableIsEmpty("DISPLAY"))
        platforms.prepend("xcb;");
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        platforms.prepend("wayland;");
    qputenv("QT_QPA_PLATFORM", platforms);
}

void sleepFor(double seconds) { std::this_thread::sleep_for(std::chrono::duration<double>(seconds)); }

/// Whoever holds the program's name on the session bus counts as an instance. One that shows nothing is worth
/// a line in the log, which the user looks at next.
void tellOf(const norvane::OlderInstance& older, const norvane::ProgramFolders& folders) {
    const std::string who = "process " + std::to_string(older.processId);
    if (older.answers) {
        std::fprintf(stderr, "Norvane already runs in this session, as %s.\n", who.c_str());
        return;
    }
    const std::string message =
        "Cannot start: " + who + " holds the name " + norvane::applicationBusName + " and doesn't answer";
    std::fprintf(stderr, "%s.\n", message.c_str());
    const norvane::SystemClock clock;
    norvane::PosixLogFile file(folders.logFile());
    norvane::EventLog(clock, file).log(message);
}

} // namespace

int main(int argc, char** argv) {
    const norvane::ProgramFolders folders;
    norvane::installCrashHandler({.reportsFolder = folders.crashReports(),
                                  .logFile = folders.logFile(),
                                  .homeFolder = norvane::homeFolder(),
                                  .version = NORVANE_VERSION});
    // Some launchers hand it down ignored; the exit codes of the tools would be lost.
    std::signal(SIGCHLD, SIG_DFL);
    allowRunningWithoutDisplay();
    norvane::surviveLostBuses();
    const QString activationToken = norvane::takeActivationToken();
    norvane::chooseLanguage();
    QGuiApplication::setApplicationName("Norvane");
    QGuiApplication::setDesktopFileName("org.norvane.Norvane");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Longer than for other services: without this bus there is no tray item until the next start.
    constexpr std::chrono::milliseconds sessionBusLimit{200};
    std::optional<norvane::SessionBusGuard> guard(sessionBusLimit);
    const QGuiApplication application(argc, argv);
    norvane::DBusInstances instances(activationToken); // opens the session bus
    guard.reset();
    if (const auto older = norvane::olderInstance(instances, sleepFor)) {
        tellOf(*older, folders);
        return EXIT_SUCCESS;
    }
    std::optional<norvane::ActivationScope> start(activationToken);
    if (norvane::runsFromDiskImage()) {
        instances.leave(); // the installed program can be started meanwhile
        return norvane::runDiskImageAlert();
    }

    norvane::finishCrashReports(folders.crashReports());
    std::optional<norvane::NorvaneApp> app(std::in_place, folders);
    app->performStartupAction();
    start.reset();
    const int status = QGuiApplication::exec();
    instances.leave(); // whoever is started now need not wait for what still ends here
    // A tool that hangs would keep a thread, and so the end of the program, waiting for its time limit.
    if (!app->settle())
        std::_Exit(status);
    return status;
}
