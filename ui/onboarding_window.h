// The setup guide on the screen.
#pragma once

#include <memory>

#include "ui/onboarding_view_model.h"
#include "ui/ui_engine.h"

namespace norvane {

/// Main thread. The window is made when it is first shown, and kept with all that was done in it.
class OnboardingWindow : public QObject {
    Q_OBJECT

public:
    OnboardingWindow(UiEngine& engine, const OnboardingServices& services)
        : engine_(engine), services_(services) {}

    /// Shows the window, in front of others.
    void open();

private Q_SLOTS:
    void visibleChanged(bool visible);

private:
    UiEngine& engine_;
    const OnboardingServices services_;
    std::unique_ptr<OnboardingViewModel> model_;
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace norvane
