// All lasting objects of the program, made in order on one page.
#pragma once

#include <QString>
#include <string>

#include "app/application_interface.h"
#include "controller/backup_controller.h"
#include "platform/linux/child_command_runner.h"
#include "platform/linux/dbus_notifications.h"
#include "platform/linux/desktop_workspace.h"
#include "platform/linux/icu_formats.h"
#include "platform/linux/linux_measurements.h"
#include "platform/linux/linux_process_activity.h"
#include "platform/linux/linux_system_events.h"
#include "platform/linux/posix_services.h"
#include "platform/linux/qt_background.h"
#include "platform/linux/qt_timers.h"
#include "platform/linux/status_notifier_item.h"
#include "platform/linux/system_clock.h"
#include "platform/linux/tcp_network_probe.h"
#include "platform/linux/user_defaults_file.h"
#include "ui/tray_presenter.h"

namespace norvane {

/// English texts as they are; translations are looked up here once there are any.
class EnglishTexts final : public Translator {
public:
    [[nodiscard]] std::string translate(std::string_view englishText) const override {
        return std::string(englishText);
    }
};

/// The folders that the program writes to; made here, because nothing else makes them.
class ProgramFolders {
public:
    ProgramFolders();

    [[nodiscard]] std::string logFile() const { return logs_ + "/Norvane.log"; }
    [[nodiscard]] std::string crashReports() const { return logs_ + "/DiagnosticReports"; }

private:
    std::string logs_;
};

/// Exists once, on the main thread, inside a running QGuiApplication.
class NorvaneApp {
public:
    NorvaneApp();

    /// The user opened the running program again.
    void reopened();

    /// Waits a moment for background work. False: some of it still runs, and the process should end without
    /// it.
    [[nodiscard]] bool settle() { return background_.waitForDone(); }

private:
    [[nodiscard]] ControllerServices services();
    [[nodiscard]] ApplicationActions actions();

    const ProgramFolders folders_;
    const SystemClock clock_;
    const PosixFileSystem files_;
    UserDefaultsFile defaults_;
    PosixLogFile logFile_;
    const EventLog eventLog_;
    const ChildCommandRunner runner_;
    const TcpNetworkProbe network_;
    DesktopWorkspace workspace_;
    const TMUtil tmUtil_;
    const CrashReporter crashReporter_;
    QtTimers timers_;
    LinuxMeasurements measurements_;
    DBusNotifications notifications_;
    LinuxSystemEvents systemEvents_;
    LinuxProcessActivity processActivity_;
    const IcuFormats formats_;
    const EnglishTexts texts_;
    QtBackground background_; // after all that its works use
    BackupController controller_;
    StatusNotifierItem trayItem_;
    TrayPresenter trayPresenter_;
    ApplicationInterface interface_;
};

} // namespace norvane
