#include "ui/onboarding/onboarding_view_model.h"

#include <utility>

#include "ui/kit/view_values.h"

namespace norvane {

namespace {

constexpr double pollSeconds = 2;

} // namespace

OnboardingViewModel::OnboardingViewModel(const OnboardingServices& services)
    : services_(services), store_(services.defaults), launchAtLogin_(services.loginItem.enabled()) {
    refresh();
}

OnboardingViewModel::~OnboardingViewModel() = default;

void OnboardingViewModel::opened() {
    pollTimer_ = services_.timers.repeating(pollSeconds, 0, [this] {
        if (step_ == Automatic)
            poll();
    });
    subscription_ = services_.controller.subscribe([this] { soon_.scheduleSoon([this] { refresh(); }); });
    refresh();
}

void OnboardingViewModel::closed() {
    pollTimer_.reset();
    subscription_.reset();
    soon_.cancel();
    if (std::exchange(done_, false))
        goTo(Welcome);
}

QString OnboardingViewModel::position() const {
    return viewText(fillIn(services_.translator.translate("Step %d of %d"),
                           {std::int64_t{step_} + 1, std::int64_t{steps()}}));
}

QString OnboardingViewModel::forwardLabel() const {
    return viewText(services_.translator.translate(isLast() ? "Finish" : "Continue"));
}

QVariantList OnboardingViewModel::instructions() const {
    QVariantList lines;
    for (const char* english : {"1.  Click **Options…** (bottom-right of the Time Machine pane)",
                                "2.  Set **Back up frequency** to **Manually**",
                                "3.  Close System Settings — this page updates by itself"}) {
        const std::string line = services_.translator.translate(english);
        lines.append(QVariantMap{{"styled", styledText(line)}, {"plain", unmarkedText(line)}});
    }
    return lines;
}

void OnboardingViewModel::setLaunchAtLogin(bool launch) {
    if (launch == launchAtLogin_)
        return;
    launchAtLogin_ = launch;
    // What becomes of it is told in the settings, not here.
    const LoginItem::Done done = [](const std::string& /*error*/) {};
    launch ? services_.loginItem.enable(done) : services_.loginItem.disable(done);
    Q_EMIT coverChanged();
}

void OnboardingViewModel::back() {
    if (hasPrevious())
        goTo(static_cast<Step>(step_ - 1));
}

void OnboardingViewModel::forward() {
    if (!isLast())
        return goTo(static_cast<Step>(step_ + 1));
    store_.setOnboardingDone(true);
    done_ = true;
    Q_EMIT finished();
}

void OnboardingViewModel::enableAlerts() {
    services_.notifications.requestPermission();
    alertsRequested_ = true;
    Q_EMIT coverChanged();
}

void OnboardingViewModel::goTo(Step step) {
    step_ = step;
    Q_EMIT stepChanged();
}

void OnboardingViewModel::poll() {
    services_.controller.refreshAutoBackupFlag(); // which does not wait for a slow disk
    services_.controller.refreshDestination();
}

void OnboardingViewModel::refresh() {
    OnboardingContent content = onboardingContent(services_.controller.state(), services_.translator);
    if (content == content_)
        return;
    content_ = std::move(content);
    Q_EMIT contentChanged();
}

} // namespace norvane
