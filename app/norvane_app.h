// All lasting objects of the program, made in order on one page.
#pragma once

#include <QCoreApplication>
#include <memory>
#include <string>

#include "app/application_interface.h"
#include "controller/backup_controller.h"
#include "platform/linux/applications/desktop_applications.h"
#include "platform/linux/bus/bus_link.h"
#include "platform/linux/desktop/autostart_file.h"
#include "platform/linux/desktop/dbus_notifications.h"
#include "platform/linux/desktop/desktop_email_composer.h"
#include "platform/linux/desktop/desktop_workspace.h"
#include "platform/linux/desktop/portal_appearance.h"
#include "platform/linux/desktop/status_notifier_item.h"
#include "platform/linux/event_loop/linux_system_events.h"
#include "platform/linux/event_loop/qt_background.h"
#include "platform/linux/event_loop/qt_timers.h"
#include "platform/linux/event_loop/time_zone_watch.h"
#include "platform/linux/event_loop/wake_detector.h"
#include "platform/linux/files/kept_user_defaults.h"
#include "platform/linux/files/posix_services.h"
#include "platform/linux/files/user_defaults_file.h"
#include "platform/linux/measurements/desktop_power.h"
#include "platform/linux/measurements/linux_measurements.h"
#include "platform/linux/network/https_update_service.h"
#include "platform/linux/network/tcp_network_probe.h"
#include "platform/linux/processes/child_command_runner.h"
#include "platform/linux/processes/linux_process_activity.h"
#include "platform/linux/processes/linux_tool_paths.h"
#include "platform/linux/processes/program_place.h"
#include "platform/linux/time/icu_formats.h"
#include "platform/linux/time/system_clock.h"
#include "ui/health/health_window.h"
#include "ui/kit/english_texts.h"
#include "ui/kit/theme_updater.h"
#include "ui/kit/ui_engine.h"
#include "ui/local_snapshots/local_snapshots_window.h"
#include "ui/onboarding/onboarding_window.h"
#include "ui/panel/panel.h"
#include "ui/panel/tray_presenter.h"
#include "ui/settings/accent_choice.h"
#include "ui/settings/settings_window.h"
#include "ui/settings/update_alert.h"
#include "ui/settings/updater_view_model.h"

namespace norvane {

/// The folders that the program writes to; made here, because nothing else makes them.
class ProgramFolders {
public:
    ProgramFolders();

    [[nodiscard]] std::string logFile() const { return logs_ + "/Norvane.log"; }
    [[nodiscard]] std::string crashReports() const { return logs_ + "/DiagnosticReports"; }

private:
    std::string logs_;
};

/// Makes the process speak the language that the user chose. To be called before there is a QGuiApplication.
void chooseLanguage();

/// Exists once, on the main thread, inside a running QGuiApplication.
class NorvaneApp {
public:
    explicit NorvaneApp(const ProgramFolders& folders);

    /// The tray item is there: whoever has not finished the setup guide sees it. Not without a display, where
    /// the window would cost memory and nobody could finish it.
    void performStartupAction();

    /// The user opened the running program again.
    void reopened();

    /// Waits a moment for background work, and ends tools that hang. False: some of it still runs, and the
    /// process should end without it.
    [[nodiscard]] bool settle();

private:
    [[nodiscard]] ControllerServices services();
    [[nodiscard]] std::unique_ptr<UpdateService> updateService();
    void tellOfUpdate(const UpdateResult& result, bool askedByUser);
    [[nodiscard]] SettingsServices settingsServices();
    [[nodiscard]] SettingsActions settingsActions();
    [[nodiscard]] HealthServices healthServices();
    [[nodiscard]] HealthActions healthActions();
    void openOnboardingWindow() { onboarding_.open(); }
    [[nodiscard]] ApplicationActions actions();
    [[nodiscard]] NotificationAnswers answers();
    void opened(const std::string& matter);

    const SystemClock clock_;
    const PosixFileSystem files_;
    PosixLogFile logFile_;
    const EventLog eventLog_;
    KeptUserDefaults defaults_;
    const ChildCommandRunner runner_;
    const TcpNetworkProbe network_;
    DesktopWorkspace workspace_{
        {"x-apple.systempreferences", programFolder() + "/norvane-timemachine-settings"}};
    const TMUtil tmUtil_;
    DesktopEmailComposer emailComposer_;
    const CrashReporter crashReporter_;
    WakeDetector wakeDetector_;
    // What a wake means is decided before anything that fell due is done.
    QtTimers timers_{[this] { wakeDetector_.lookAtClocks(); }};
    BusLink systemBus_;
    BusLink sessionBus_;
    DesktopPower power_{systemBus_, "/sys/class/power_supply"};
    DBusNotifications notifications_{sessionBus_};
    AutostartFile loginItem_{AutostartFile::Folders::ofUser(), programPath()};
    PortalAppearance appearance_;
    LinuxSystemEvents systemEvents_;
    LinuxProcessActivity processActivity_;
    const IcuFormats formats_;
    const TimeZoneWatch timeZoneWatch_;
    const EnglishTexts texts_;
    QtBackground background_; // after all that its works use
    DesktopEntries desktopEntries_{background_, runner_,
                                   ownToolsFolder(programFolder()) + "/desktop-entries"};
    DesktopApplications applications_{desktopEntries_};
    LinuxMeasurements measurements_{power_, desktopEntries_, "/proc", "/dev"};
    BackupController controller_;
    std::string updatePage_; // of the available update that a notification told of last
    UpdaterViewModel updater_{updateService()};
    Theme theme_{false, brandOrange};
    ThemeUpdater themeUpdater_{theme_, appearance_, defaults_};
    const AccentChoice accentChoice_{themeUpdater_, controller_};
    UiEngine uiEngine_{theme_, texts_};
    NotificationCenter notificationCenter_;
    UpdateAlert updateAlert_;
    SettingsWindow settings_;
    LocalSnapshotsWindow localSnapshots_{
        uiEngine_, {background_, tmUtil_, files_, texts_, Calendar::current}, {clock_, timers_, formats_}};
    HealthWindow health_{uiEngine_, healthServices(), healthActions()};
    OnboardingWindow onboarding_{
        uiEngine_, {controller_, timers_, tmUtil_, defaults_, loginItem_, notifications_, texts_}};
    Panel panel_{
        uiEngine_,
        {controller_, clock_, timers_, formats_, texts_, tmUtil_, crashReporter_},
        {[this] { health_.open(); }, [this] { settings_.open(); }, [] { QCoreApplication::quit(); }}};
    StatusNotifierItem trayItem_{ownIconsFolder(programFolder())};
    TrayPresenter trayPresenter_;
    ApplicationInterface interface_;
};

} // namespace norvane
