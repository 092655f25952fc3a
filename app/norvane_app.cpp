#include "app/norvane_app.h"

#include <QCoreApplication>

#include "platform/linux/linux_tool_paths.h"
#include "platform/linux/user_folders.h"

namespace norvane {

namespace {

constexpr auto defaultsDomain = "org.norvane.Norvane";

} // namespace

ProgramFolders::ProgramFolders() : logs_(libraryFolder() + "/Logs") {
    makeFolder(preferencesFolder());
    makeFolder(logs_);
    makeFolder(crashReports());
}

NorvaneApp::NorvaneApp()
    : files_(homeFolder()), defaults_(preferencesFile(defaultsDomain)), logFile_(folders_.logFile()),
      eventLog_(clock_, logFile_),
      tmUtil_(runner_, chooseTools(files_, programFolder()), network_, workspace_),
      crashReporter_(defaults_, files_, clock_, folders_.crashReports()), controller_(services()),
      trayPresenter_(controller_, trayItem_, texts_), interface_(actions()) {
    trayItem_.onActivate([this](int, int) { reopened(); });
}

void NorvaneApp::reopened() { eventLog_.log("Reopened from Finder/Dock — opening Health window"); }

ControllerServices NorvaneApp::services() {
    return {.clock = clock_,
            .timers = timers_,
            .background = background_,
            .defaults = defaults_,
            .tmUtil = tmUtil_,
            .files = files_,
            .measurements = measurements_,
            .notifications = notifications_,
            .systemEvents = systemEvents_,
            .processActivity = processActivity_,
            .crashReporter = crashReporter_,
            .eventLog = eventLog_,
            .formats = formats_,
            .translator = texts_,
            .calendar = Calendar::current(),
            .version = NORVANE_VERSION,
            .processId = QCoreApplication::applicationPid()};
}

ApplicationActions NorvaneApp::actions() {
    constexpr double hour = 3600;
    const auto pauseFor = [this](double seconds) { controller_.pause(plusSeconds(clock_.now(), seconds)); };
    return {[this] { reopened(); },
            {{"back-up-now", [this] { controller_.requestBackup(false); }},
             {"stop", [this] { controller_.stopBackup(); }},
             {"skip-next", [this] { controller_.skipNext(); }},
             {"pause-1-hour", [pauseFor] { pauseFor(hour); }},
             {"pause-3-hours", [pauseFor] { pauseFor(3 * hour); }},
             {"pause-until-tomorrow", [this] { controller_.pauseUntilTomorrow(); }},
             {"resume", [this] { controller_.resume(); }},
             {"quit", [] { QCoreApplication::quit(); }}}};
}

} // namespace norvane
