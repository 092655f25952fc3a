// The General tab without its view.
#pragma once

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration>
#include <functional>

#include "controller/backup_controller.h"
#include "platform/login_item.h"
#include "ui/settings/updater_view_model.h"

namespace norvane {

struct GeneralServices {
    BackupController& controller;
    UserDefaults& defaults;
    LoginItem& loginItem;
    UpdaterViewModel& updater;
    Timers& timers;
    const Translator& translator;
};

struct RelaunchActions {
    std::function<void()> startNewInstance;
    std::function<void()> quit;
};

/// Main thread only. Every change counts at once.
class GeneralSettings : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY changed)
    Q_PROPERTY(QString loginItemError READ loginItemError NOTIFY changed)
    Q_PROPERTY(double launchGrace READ launchGrace WRITE setLaunchGrace NOTIFY changed) ///< Minutes.
    Q_PROPERTY(QVariantList launchGraceChoices READ launchGraceChoices CONSTANT)
    Q_PROPERTY(QString language READ language WRITE setLanguage NOTIFY changed) ///< A code, or "system".
    Q_PROPERTY(QVariantList languageChoices READ languageChoices CONSTANT)
    Q_PROPERTY(bool languageChanged READ languageChanged NOTIFY changed)
    Q_PROPERTY(bool alwaysBrand READ alwaysBrand WRITE setAlwaysBrand NOTIFY changed)
    Q_PROPERTY(bool looksForUpdates READ looksForUpdates CONSTANT) ///< At all, as this build was made.
    Q_PROPERTY(bool automaticallyChecks READ automaticallyChecks WRITE setAutomaticallyChecks NOTIFY changed)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY changed)
    Q_PROPERTY(QString updatesFooter READ updatesFooter CONSTANT)
    Q_PROPERTY(QString destination READ destination NOTIFY changed)

public:
    /// `updateHost`: whom this build asks for new versions; empty: nobody.
    GeneralSettings(const GeneralServices& services, RelaunchActions actions, std::string updateHost);
    ~GeneralSettings() override;

    /// The tab appears: it shows what is stored and what the desktop says.
    void load();
    /// The controller's state has changed.
    void refresh();

    [[nodiscard]] bool launchAtLogin() const { return launchAtLogin_; }
    void setLaunchAtLogin(bool launch);
    [[nodiscard]] QString loginItemError() const { return QString::fromStdString(loginItemError_); }
    [[nodiscard]] double launchGrace() const { return static_cast<double>(launchGrace_); }
    void setLaunchGrace(double minutes);
    [[nodiscard]] QVariantList launchGraceChoices() const;
    [[nodiscard]] QString language() const { return QString::fromStdString(language_); }
    void setLanguage(const QString& code);
    [[nodiscard]] QVariantList languageChoices() const;
    [[nodiscard]] bool languageChanged() const { return languageChanged_; }
    [[nodiscard]] bool alwaysBrand() const { return alwaysBrand_; }
    void setAlwaysBrand(bool always);
    [[nodiscard]] bool looksForUpdates() const { return !updateHost_.empty(); }
    [[nodiscard]] bool automaticallyChecks() const {
        return looksForUpdates() && services_.updater.automaticallyChecks();
    }
    void setAutomaticallyChecks(bool automatically);
    [[nodiscard]] bool canCheckForUpdates() const { return services_.updater.canCheckForUpdates(); }
    [[nodiscard]] QString updatesFooter() const;
    [[nodiscard]] QString destination() const { return destination_; }

    Q_INVOKABLE void relaunch();
    Q_INVOKABLE void checkForUpdates() { services_.updater.checkForUpdates(); }

Q_SIGNALS:
    void changed();

private:
    [[nodiscard]] QString text(const char* english) const;
    void loginItemAnswered(const std::string& error);

    const GeneralServices services_;
    const RelaunchActions actions_;
    const std::string updateHost_;
    SettingsStore store_;
    bool launchAtLogin_ = false;
    std::string loginItemError_;
    std::int64_t launchGrace_ = 0;
    std::string language_;
    bool languageChanged_ = false;
    bool alwaysBrand_ = false;
    QString destination_;
    std::unique_ptr<Timer> quitTimer_;
    Lifetime lifetime_;
};

} // namespace norvane
