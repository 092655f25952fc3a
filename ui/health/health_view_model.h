// The Health window without its view.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <functional>
#include <memory>
#include <string>

#include "controller/backup_controller.h"
#include "platform/workspace.h"
#include "ui/health/health_content.h"
#include "ui/kit/debouncer.h"

namespace norvane {

/// What it works with; all of it must outlive the view-model.
struct HealthServices {
    BackupController& controller;
    const Clock& clock;
    Timers& timers;
    const Formats& formats;
    const Translator& translator;
    Workspace& workspace;
    std::function<Calendar()> calendar; ///< The user's as it is now.
    std::string website;                ///< "https://host"
};

/// What the window leads to.
struct HealthActions {
    std::function<void()> openActivity;
    std::function<void()> openLocalSnapshots;
};

/// Main thread only.
class HealthViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(norvane::HealthContent content READ content NOTIFY contentChanged)
    /// Apart from the rest, because it changes with the time.
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY subtitleChanged)

public:
    HealthViewModel(HealthServices services, HealthActions actions);
    ~HealthViewModel() override;

    /// While the window is shown, it follows the controller and the time.
    void opened();
    void closed();

    [[nodiscard]] const HealthContent& content() const { return content_; }
    [[nodiscard]] const QString& subtitle() const { return subtitle_; }

    Q_INVOKABLE void refresh() { services_.controller.refreshHealthData(); }
    Q_INVOKABLE void openActivity() { actions_.openActivity(); }
    Q_INVOKABLE void openLocalSnapshots() { actions_.openLocalSnapshots(); }
    Q_INVOKABLE void buyCoffee() { services_.workspace.openUrl(services_.website + "/coffee?src=health"); }

Q_SIGNALS:
    void contentChanged();
    void subtitleChanged();

private:
    void show();
    void tick();

    const HealthServices services_;
    const HealthActions actions_;
    HealthContent content_;
    QString subtitle_;
    std::unique_ptr<Timer> ticker_;    // runs while the window is open
    Debouncer soon_{services_.timers}; // of the controller's changes
    std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
