// The Settings window without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <memory>
#include <optional>

#include "platform/workspace.h"
#include "ui/kit/debouncer.h"
#include "ui/kit/view_values.h"
#include "ui/settings/settings_tab.h"
#include "ui/settings/tabs/activity_list.h"
#include "ui/settings/tabs/blackout_settings.h"
#include "ui/settings/tabs/conditions_settings.h"
#include "ui/settings/tabs/general_settings.h"
#include "ui/settings/tabs/schedule_settings.h"
#include "ui/texts/status_line.h"

namespace norvane {

/// What it works with; all of it must outlive the view-model.
struct SettingsServices {
    BackupController& controller;
    const Clock& clock;
    Timers& timers;
    Background& background;
    const Formats& formats;
    const Translator& translator;
    UserDefaults& defaults;
    LoginItem& loginItem;
    UpdaterViewModel& updater;
    InstalledApplications& applications;
    const LogFile& log;
    Workspace& workspace;
};

/// What it tells of the program.
struct ProgramFacts {
    std::string version;    ///< Empty: none.
    std::string website;    ///< "https://host"
    std::string updateHost; ///< Empty: this build looks for no updates.
    std::string logPath;    ///< Absolute.
};

struct SettingsActions {
    RelaunchActions relaunch;
    std::function<void()> showSetupGuide;
};

/// Main thread only.
class SettingsViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(QVariantList tabs READ tabs CONSTANT) ///< Maps: "name", "label", "symbol".
    Q_PROPERTY(int selectedTab READ selectedTab WRITE setSelectedTab NOTIFY selectedTabChanged)
    Q_PROPERTY(QString selectedName READ selectedName NOTIFY selectedTabChanged)
    // The status bar.
    Q_PROPERTY(norvane::Theme::Tint dot READ dot NOTIFY statusChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString deferral READ deferral NOTIFY statusChanged)
    // What the controls need of the locale.
    Q_PROPERTY(
        QVariantList weekdays READ weekdays CONSTANT) ///< In the user's order: "bit", "symbol", "name".
    Q_PROPERTY(bool hours24 READ hours24 CONSTANT)
    Q_PROPERTY(QStringList dayHalves READ dayHalves CONSTANT) ///< "AM", "PM".
    // The tabs.
    Q_PROPERTY(norvane::GeneralSettings* general READ general CONSTANT)
    Q_PROPERTY(norvane::ScheduleSettings* schedule READ schedule CONSTANT)
    Q_PROPERTY(norvane::BlackoutSettings* blackouts READ blackouts CONSTANT)
    Q_PROPERTY(norvane::ConditionsSettings* conditions READ conditions CONSTANT)
    Q_PROPERTY(norvane::ActivityList* activity READ activity CONSTANT)
    // About.
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(QString versionText READ versionText CONSTANT) ///< "Version 1.0"
    Q_PROPERTY(QString websiteHost READ websiteHost CONSTANT)

public:
    SettingsViewModel(const SettingsServices& services, ProgramFacts facts, SettingsActions actions);
    ~SettingsViewModel() override;

    /// While the window is shown, the status bar follows the controller and the time.
    void opened();
    void closed();
    void select(SettingsTab tab) { setSelectedTab(static_cast<int>(tab)); }

    [[nodiscard]] QVariantList tabs() const;
    [[nodiscard]] int selectedTab() const { return static_cast<int>(selectedTab_); }
    [[nodiscard]] QString selectedName() const { return viewText(rawValue(selectedTab_)); }
    /// A number that is no tab's changes nothing.
    void setSelectedTab(int tab);
    [[nodiscard]] Tint dot() const { return status_.dot; }
    [[nodiscard]] QString status() const { return QString::fromStdString(status_.text); }
    [[nodiscard]] QString deferral() const { return QString::fromStdString(status_.deferral); }
    [[nodiscard]] QVariantList weekdays() const;
    [[nodiscard]] bool hours24() const { return services_.formats.uses24Hours(); }
    [[nodiscard]] QStringList dayHalves() const;
    [[nodiscard]] GeneralSettings* general() { return &general_; }
    [[nodiscard]] ScheduleSettings* schedule() { return &schedule_; }
    [[nodiscard]] BlackoutSettings* blackouts() { return &blackouts_; }
    [[nodiscard]] ConditionsSettings* conditions() { return &conditions_; }
    [[nodiscard]] ActivityList* activity() { return &activity_; }
    [[nodiscard]] QString version() const;
    [[nodiscard]] QString versionText() const;
    [[nodiscard]] QString websiteHost() const;

    Q_INVOKABLE void openLogFile() { services_.workspace.revealFile(facts_.logPath); }
    Q_INVOKABLE void showSetupGuide() { actions_.showSetupGuide(); }
    /// The path begins with "/"; without one it is the home page.
    Q_INVOKABLE void openWebsite(const QString& path);

Q_SIGNALS:
    void selectedTabChanged();
    void statusChanged();

private:
    void tabAppears();
    void refresh();

    const SettingsServices services_;
    const ProgramFacts facts_;
    const SettingsActions actions_;
    GeneralSettings general_;
    ScheduleSettings schedule_;
    BlackoutSettings blackouts_;
    ConditionsSettings conditions_;
    ActivityList activity_;
    SettingsTab selectedTab_ = SettingsTab::general;
    StatusLine status_;
    bool open_ = false;
    std::unique_ptr<Timer> ticker_;    // runs while the window is open
    Debouncer soon_{services_.timers}; // of the controller's changes
    std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
