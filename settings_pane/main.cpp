// The program that "Open Time Machine Settings" opens where the system has no such pane.
#include <QDBusConnection>
#include <QGuiApplication>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>

#include "platform/language_override.h"
#include "platform/linux/bus/bus_probe.h"
#include "platform/linux/desktop/activation_token.h"
#include "platform/linux/desktop/desktop_workspace.h"
#include "platform/linux/desktop/portal_appearance.h"
#include "platform/linux/desktop/process_language.h"
#include "platform/linux/event_loop/qt_background.h"
#include "platform/linux/event_loop/qt_timers.h"
#include "platform/linux/files/posix_services.h"
#include "platform/linux/files/user_folders.h"
#include "platform/linux/processes/child_command_runner.h"
#include "platform/linux/processes/linux_tool_paths.h"
#include "platform/linux/time/icu_formats.h"
#include "settings_pane/pane_instance.h"
#include "settings_pane/pane_window.h"
#include "timemachine_linux/settings/stored_backup_settings.h"
#include "ui/kit/english_texts.h"
#include "ui/kit/theme_updater.h"

namespace {

using namespace norvane;

/// All lasting objects, made in order.
struct Pane {
    const ChildCommandRunner runner{};
    const std::string tmutil = chooseTools(PosixFileSystem(homeFolder()), programFolder()).tmutil;
    StoredBackupSettings settings{runner, tmutil, userPlaces(), {runner, hourlyTimerPlaces(tmutil)}};
    UserDefaultsFile defaults{preferencesFile("org.norvane.Norvane")};
    QtTimers timers;
    DesktopWorkspace workspace;
    const IcuFormats formats{};
    const EnglishTexts texts{};
    QtBackground background; // after all that its works use
    PortalAppearance appearance{QDBusConnection::sessionBus(), true};
    Theme theme{false, brandOrange};
    const ThemeUpdater themeUpdater{theme, appearance, defaults};
    UiEngine engine{theme, texts};
    PaneWindow window{engine, {settings, timers, background, workspace, formats, texts, homeFolder()}};
};

} // namespace

int main(int argc, char** argv) {
    std::signal(SIGCHLD, SIG_DFL); // some launchers hand it down ignored
    surviveLostBuses();
    const QVariantMap started = platformDataWith(takeActivationToken());
    setProcessLanguage(languageOverride(UserDefaultsFile(preferencesFile("org.norvane.Norvane"))));
    QGuiApplication::setApplicationName("Time Machine");
    QGuiApplication::setDesktopFileName("org.norvane.TimeMachineSettings");
    constexpr std::chrono::milliseconds sessionBusLimit{200};
    std::optional<SessionBusGuard> guard(sessionBusLimit);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false); // what the user has changed is finished first
    PaneInstance instance(started);                    // opens the session bus
    guard.reset();
    if (instance.handedOver())
        return EXIT_SUCCESS;
    makeFolder(preferencesFolder());
    std::optional<Pane> pane(std::in_place);
    QObject::connect(&pane->window, &PaneWindow::done, &application, &QGuiApplication::quit);
    const auto open = [&pane](const QVariantMap& platformData) {
        const ActivationScope scope(activationTokenOf(platformData));
        return pane->window.open();
    };
    QObject::connect(&instance, &PaneInstance::activated, &pane->window, open);
    const int status = open(started) ? QGuiApplication::exec() : EXIT_FAILURE;
    instance.retire();
    // All that still runs only reads, and may wait for a disk that never answers.
    if (!pane->background.waitForDone())
        std::_Exit(status);
    return status;
}
