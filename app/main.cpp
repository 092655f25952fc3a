// The entry point: one instance, one event loop.
#include <QGuiApplication>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <thread>

#include "app/dbus_instances.h"
#include "app/disk_image_alert.h"
#include "app/norvane_app.h"
#include "platform/linux/bus_probe.h"
#include "platform/linux/crash_handler.h"
#include "platform/linux/finished_crash_reports.h"
#include "platform/linux/program_place.h"
#include "platform/linux/user_folders.h"

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
    norvane::chooseLanguage();
    QGuiApplication::setApplicationName("Norvane");
    QGuiApplication::setDesktopFileName("org.norvane.Norvane");
    QGuiApplication::setQuitOnLastWindowClosed(false);
    // Longer than for other services: without this bus there is no tray item until the next start.
    constexpr std::chrono::milliseconds sessionBusLimit{200};
    std::optional<norvane::SessionBusGuard> guard(sessionBusLimit);
    const QGuiApplication application(argc, argv);
    norvane::DBusInstances instances; // opens the session bus
    guard.reset();
    if (!norvane::becomesTheInstance(instances, sleepFor))
        return EXIT_SUCCESS;
    if (norvane::runsFromDiskImage())
        return norvane::runDiskImageAlert();

    norvane::finishCrashReports(folders.crashReports());
    std::optional<norvane::NorvaneApp> app(std::in_place, folders);
    app->performStartupAction();
    const int status = QGuiApplication::exec();
    // A tool that hangs would keep a thread, and so the end of the program, waiting for its time limit.
    if (!app->settle())
        std::_Exit(status);
    return status;
}
