// The setup guide without its view.
#pragma once

#include <QObject>
#include <QVariantList>
#include <QtQmlIntegration>
#include <memory>

#include "controller/backup_controller.h"
#include "platform/login_item.h"
#include "ui/kit/debouncer.h"
#include "ui/onboarding/onboarding_content.h"

namespace norvane {

/// What it works with; all of it must outlive the view-model.
struct OnboardingServices {
    BackupController& controller;
    Timers& timers;
    const TMUtil& tmUtil;
    UserDefaults& defaults;
    LoginItem& loginItem;
    Notifications& notifications;
    const Translator& translator;
};

/// Main thread only.
class OnboardingViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("")
    Q_PROPERTY(Step step READ step NOTIFY stepChanged)
    Q_PROPERTY(int steps READ steps CONSTANT)
    Q_PROPERTY(QString position READ position NOTIFY stepChanged) ///< "Step 1 of 4".
    Q_PROPERTY(bool hasPrevious READ hasPrevious NOTIFY stepChanged)
    Q_PROPERTY(QString forwardLabel READ forwardLabel NOTIFY stepChanged)
    Q_PROPERTY(norvane::OnboardingContent content READ content NOTIFY contentChanged)
    /// How the automatic schedule is turned off: maps with "styled" and, to be read aloud, "plain".
    Q_PROPERTY(QVariantList instructions READ instructions CONSTANT)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY coverChanged)
    Q_PROPERTY(bool alertsRequested READ alertsRequested NOTIFY coverChanged)

public:
    enum Step { Welcome, Automatic, Cover, Summary };
    Q_ENUM(Step)

    explicit OnboardingViewModel(const OnboardingServices& services);
    ~OnboardingViewModel() override;

    /// While the window is shown, it follows the controller, and on the step about the automatic schedule it
    /// looks every 2 seconds whether the user has turned that off, and which backup disk was chosen.
    void opened();
    /// A guide that was finished begins anew the next time; another one goes on where it was.
    void closed();

    [[nodiscard]] Step step() const { return step_; }
    [[nodiscard]] static int steps() { return Summary + 1; }
    [[nodiscard]] QString position() const;
    [[nodiscard]] bool hasPrevious() const { return step_ > Welcome; }
    [[nodiscard]] bool isLast() const { return step_ == Summary; }
    [[nodiscard]] QString forwardLabel() const;
    [[nodiscard]] const OnboardingContent& content() const { return content_; }
    [[nodiscard]] QVariantList instructions() const;
    [[nodiscard]] bool launchAtLogin() const { return launchAtLogin_; }
    void setLaunchAtLogin(bool launch);
    [[nodiscard]] bool alertsRequested() const { return alertsRequested_; }

    Q_INVOKABLE void back();
    /// The next step; the last one finishes the guide.
    Q_INVOKABLE void forward();
    Q_INVOKABLE void openTimeMachineSettings() { services_.tmUtil.openTimeMachineSettings(); }
    Q_INVOKABLE void enableAlerts();

Q_SIGNALS:
    void stepChanged();
    void contentChanged();
    void coverChanged();
    void finished();

private:
    void goTo(Step step);
    void poll();
    void refresh();

    const OnboardingServices services_;
    SettingsStore store_;
    Step step_ = Welcome;
    bool done_ = false; // finished since the window was opened
    OnboardingContent content_;
    bool launchAtLogin_;
    bool alertsRequested_ = false;
    std::unique_ptr<Timer> pollTimer_; // runs while the window is shown
    Debouncer soon_{services_.timers}; // of the controller's changes
    std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
