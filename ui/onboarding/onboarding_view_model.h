// The setup guide without its view.
#pragma once

#include <QObject>
#include <QVariantList>
#include <memory>

#include "controller/backup_controller.h"
#include "platform/login_item.h"
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
    Q_PROPERTY(int step READ step NOTIFY stepChanged) ///< From 0.
    Q_PROPERTY(int steps READ steps CONSTANT)
    Q_PROPERTY(QString position READ position NOTIFY stepChanged) ///< "Step 1 of 4".
    Q_PROPERTY(bool hasPrevious READ hasPrevious NOTIFY stepChanged)
    Q_PROPERTY(bool isLast READ isLast NOTIFY stepChanged)
    Q_PROPERTY(norvane::OnboardingContent content READ content NOTIFY contentChanged)
    /// How the automatic schedule is turned off: maps with "styled" and, to be read aloud, "plain".
    Q_PROPERTY(QVariantList instructions READ instructions CONSTANT)
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY coverChanged)
    Q_PROPERTY(bool alertsRequested READ alertsRequested NOTIFY coverChanged)

public:
    explicit OnboardingViewModel(const OnboardingServices& services);
    ~OnboardingViewModel() override;

    /// While the window is shown, it follows the controller, and on the step about the automatic schedule it
    /// looks every 2 seconds whether the user has turned that off, and which backup disk was chosen.
    void opened();
    /// A guide that was finished begins anew the next time; another one goes on where it was.
    void closed();

    [[nodiscard]] int step() const { return step_; }
    [[nodiscard]] static int steps() { return 4; }
    [[nodiscard]] QString position() const;
    [[nodiscard]] bool hasPrevious() const { return step_ > 0; }
    [[nodiscard]] bool isLast() const { return step_ == steps() - 1; }
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
    void goTo(int step);
    void poll();
    void refresh();

    const OnboardingServices services_;
    SettingsStore store_;
    int step_ = 0;
    bool done_ = false; // finished since the window was opened
    OnboardingContent content_;
    bool launchAtLogin_;
    bool alertsRequested_ = false;
    std::unique_ptr<Timer> pollTimer_; // runs while the window is shown
    std::unique_ptr<Timer> soon_;      // once for any number of changes in a row
    std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
