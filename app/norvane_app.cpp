#include "app/norvane_app.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QProcess>
#include <QUrl>

#include "platform/language_override.h"
#include "platform/linux/bus/bus_probe.h"
#include "platform/linux/desktop/process_language.h"
#include "platform/linux/files/user_folders.h"

namespace norvane {

namespace {

constexpr auto defaultsDomain = "org.norvane.Norvane";
constexpr auto updateMatter = "update";

/// Empty: this build looks for no updates.
std::string updateHost() {
    const QUrl feed(NORVANE_UPDATE_FEED, QUrl::StrictMode);
    return feed.scheme() == "https" ? feed.host().toStdString() : "";
}

bool hasDisplay() { return QGuiApplication::platformName() != "offscreen"; }

QDBusConnection openSystemBus(const QString& name) { return openBus(systemBusAddress(), name); }

ProgramFacts factsOf(const ProgramFolders& folders) {
    return {.version = NORVANE_VERSION,
            .website = NORVANE_WEBSITE,
            .updateHost = updateHost(),
            .logPath = folders.logFile()};
}

} // namespace

ProgramFolders::ProgramFolders() : logs_(libraryFolder() + "/Logs") {
    makeFolder(preferencesFolder());
    makeFolder(logs_);
    makeFolder(crashReports());
}

void chooseLanguage() {
    setProcessLanguage(languageOverride(UserDefaultsFile(preferencesFile(defaultsDomain))));
}

NorvaneApp::NorvaneApp(const ProgramFolders& folders)
    : files_(homeFolder()), logFile_(folders.logFile()), eventLog_(clock_, logFile_),
      defaults_(preferencesFile(defaultsDomain),
                [this] { eventLog_.log("Settings can't be stored — keeping them until Norvane quits"); }),
      network_(openSystemBus), tmUtil_(runner_, chooseTools(files_, programFolder()), network_, workspace_),
      emailComposer_(QDBusConnection::sessionBus()),
      crashReporter_(defaults_, files_, clock_, emailComposer_, folders.crashReports(),
                     NORVANE_SUPPORT_ADDRESS),
      systemBus_(systemBusAddress()), sessionBus_(sessionBusAddress()),
      appearance_(QDBusConnection::sessionBus(), hasDisplay()),
      systemEvents_(systemBus_, wakeDetector_, appearance_), timeZoneWatch_("/etc", adoptSystemTimeZone),
      controller_(services()), updateAlert_(uiEngine_, workspace_, texts_, {NORVANE_VERSION, updateHost()}),
      settings_(uiEngine_, notificationCenter_, settingsServices(), factsOf(folders), settingsActions()),
      trayPresenter_(controller_, trayItem_, clock_, timers_, formats_, texts_), interface_(actions()) {
    trayItem_.onActivate([this](int x, int y) {
        panel_.toggleAt(x == 0 && y == 0 ? std::nullopt : std::optional(QPoint(x, y)));
    });
    notifications_.onAnswer(answers());
}

void NorvaneApp::reopened() {
    eventLog_.log("Reopened from Finder/Dock — opening Health window");
    health_.open();
}

bool NorvaneApp::settle() {
    for (const bool kill : {false, true}) {
        if (background_.waitForDone())
            return true;
        runner_.endAll(kill);
    }
    return background_.waitForDone();
}

void NorvaneApp::performStartupAction() {
    if (hasDisplay() && !SettingsStore(defaults_).onboardingDone())
        openOnboardingWindow();
}

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

SettingsServices NorvaneApp::settingsServices() {
    return {.controller = controller_,
            .clock = clock_,
            .timers = timers_,
            .background = background_,
            .formats = formats_,
            .translator = texts_,
            .defaults = defaults_,
            .loginItem = loginItem_,
            .updater = updater_,
            .applications = applications_,
            .log = logFile_,
            .workspace = workspace_};
}

SettingsActions NorvaneApp::settingsActions() {
    return {.relaunch = {.startNewInstance =
                             [] { QProcess::startDetached(QString::fromStdString(programPath()), {}); },
                         .quit = [] { QCoreApplication::quit(); }},
            .showSetupGuide = [this] { openOnboardingWindow(); }};
}

HealthServices NorvaneApp::healthServices() {
    return {.controller = controller_,
            .clock = clock_,
            .timers = timers_,
            .formats = formats_,
            .translator = texts_,
            .workspace = workspace_,
            .calendar = Calendar::current,
            .website = NORVANE_WEBSITE};
}

HealthActions NorvaneApp::healthActions() {
    return {.openActivity = [this] { settings_.openOn(SettingsTab::activity); },
            .openLocalSnapshots = [this] { localSnapshots_.open(); }};
}

std::unique_ptr<UpdateService> NorvaneApp::updateService() {
    return std::make_unique<HttpsUpdateService>(
        UpdateFeed{.url = NORVANE_UPDATE_FEED, .ownVersion = NORVANE_VERSION}, defaults_, clock_, timers_,
        [this](const UpdateResult& result, bool askedByUser) { tellOfUpdate(result, askedByUser); });
}

/// Whoever asked waits for the answer in front of a window; a notification might never be seen.
void NorvaneApp::tellOfUpdate(const UpdateResult& result, bool askedByUser) {
    if (askedByUser)
        return updateAlert_.show(result);
    updatePage_ = result.page;
    controller_.postAlert({fillIn(texts_.translate("Norvane %@ is available"), {result.version}), result.page,
                           updateMatter, ""});
}

NotificationAnswers NorvaneApp::answers() {
    return {.opened = [this](const std::string& matter) { opened(matter); },
            .backupRequested = [this] { controller_.requestBackup(false); }};
}

void NorvaneApp::opened(const std::string& matter) {
    if (matter != updateMatter)
        health_.open();
    else if (!updatePage_.empty())
        workspace_.openUrl(updatePage_);
}

ApplicationActions NorvaneApp::actions() {
    constexpr double hour = 3600;
    const auto pauseFor = [this](double seconds) { controller_.pause(plusSeconds(clock_.now(), seconds)); };
    ApplicationActions actions{[this] { reopened(); },
                               {{"panel", [this] { panel_.showAsWindow(); }},
                                {"health", [this] { health_.open(); }},
                                {"snapshots", [this] { localSnapshots_.open(); }},
                                {"settings", [this] { settings_.open(); }},
                                {"onboarding", [this] { openOnboardingWindow(); }},
                                {"back-up-now", [this] { controller_.requestBackup(false); }},
                                {"stop", [this] { controller_.stopBackup(); }},
                                {"skip-next", [this] { controller_.skipNext(); }},
                                {"pause-1-hour", [pauseFor] { pauseFor(hour); }},
                                {"pause-3-hours", [pauseFor] { pauseFor(3 * hour); }},
                                {"pause-until-tomorrow", [this] { controller_.pauseUntilTomorrow(); }},
                                {"resume", [this] { controller_.resume(); }},
                                {"quit", [] { QCoreApplication::quit(); }}}};
    for (const SettingsTabInfo& info : settingsTabs)
        actions.named["settings-" + std::string(info.rawValue)] = [this, tab = info.tab] {
            settings_.openOn(tab);
        };
    return actions;
}

} // namespace norvane
