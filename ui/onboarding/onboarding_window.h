// The setup guide on the screen.
#pragma once

#include <optional>

#include "ui/kit/kept_window.h"
#include "ui/onboarding/onboarding_view_model.h"

namespace norvane {

/// Main thread only. Made when it is first shown, and kept.
class OnboardingWindow {
public:
    OnboardingWindow(UiEngine& engine, const OnboardingServices& services)
        : engine_(engine), services_(services) {}

    /// Shows the window, in front of others.
    void open() {
        if (!guide_)
            guide_.emplace(engine_, services_);
        guide_->window.open();
    }

private:
    struct Guide {
        Guide(UiEngine& engine, const OnboardingServices& services)
            : model(services), window(engine, "Onboarding/OnboardingWindow", QVariant::fromValue(&model),
                                      {[this] { model.opened(); }, [this] { model.closed(); }}) {}

        OnboardingViewModel model;
        KeptWindow window;
    };

    UiEngine& engine_;
    const OnboardingServices services_;
    std::optional<Guide> guide_;
};

} // namespace norvane
