// The panel without its view: what it shows at this moment, and what its buttons do.
#pragma once

#include <QObject>
#include <QtQmlIntegration>
#include <functional>
#include <memory>

#include "controller/backup_controller.h"
#include "ui/kit/debouncer.h"
#include "ui/panel/panel_content.h"

namespace norvane {

/// What the panel leads to.
struct PanelActions {
    std::function<void()> openHealth;
    std::function<void()> openSettings;
    std::function<void()> quit;
};

/// What it works with; all of it must outlive the view-model.
struct PanelServices {
    BackupController& controller;
    const Clock& clock;
    Timers& timers;
    const Formats& formats;
    const Translator& translator;
    const TMUtil& tmUtil;
    const CrashReporter& crashReporter;
};

/// Main thread only.
class PanelViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(norvane::PanelContent content READ content NOTIFY contentChanged)
    Q_PROPERTY(bool confirmingQuit READ confirmingQuit NOTIFY quitChanged)
    Q_PROPERTY(QString quitMessage READ quitMessage NOTIFY quitChanged)

public:
    PanelViewModel(PanelServices services, PanelActions actions);
    ~PanelViewModel() override;

    [[nodiscard]] const PanelContent& content() const { return content_; }
    [[nodiscard]] bool confirmingQuit() const { return confirmingQuit_; }
    [[nodiscard]] const QString& quitMessage() const { return quitMessage_; }

    /// While shown, the relative times go on; opening always begins with the normal content.
    void opened();
    void closed();

    Q_INVOKABLE void backUpNow() { services_.controller.requestBackup(false); }
    Q_INVOKABLE void stop() { services_.controller.stopBackup(); }
    Q_INVOKABLE void skipNext() { services_.controller.skipNext(); }
    Q_INVOKABLE void pauseForHours(int hours);
    Q_INVOKABLE void pauseUntilTomorrow() { services_.controller.pauseUntilTomorrow(); }
    Q_INVOKABLE void resume() { services_.controller.resume(); }
    Q_INVOKABLE void dismissDeferral() { services_.controller.dismissDeferral(); }
    Q_INVOKABLE void emailReport();
    Q_INVOKABLE void ignoreReport() { services_.controller.clearPendingCrashReport(); }
    Q_INVOKABLE void openTimeMachineSettings() { services_.tmUtil.openTimeMachineSettings(); }
    Q_INVOKABLE void openHealth() { actions_.openHealth(); }
    Q_INVOKABLE void openSettings() { actions_.openSettings(); }
    Q_INVOKABLE void askToQuit();
    Q_INVOKABLE void cancelQuit();
    Q_INVOKABLE void quit() { actions_.quit(); }

Q_SIGNALS:
    void contentChanged();
    void quitChanged();

private:
    void refresh();

    const PanelServices services_;
    const PanelActions actions_;
    PanelContent content_;
    bool confirmingQuit_ = false;
    QString quitMessage_;
    std::unique_ptr<Timer> ticker_;    // runs while the panel is open
    Debouncer soon_{services_.timers}; // of the controller's changes
    std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
