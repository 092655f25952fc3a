#include "ui/onboarding_window.h"

namespace norvane {

void OnboardingWindow::open() {
    if (!window_) {
        model_ = std::make_unique<OnboardingViewModel>(services_);
        window_ = engine_.makeWindow("OnboardingWindow", {{"model", QVariant::fromValue(model_.get())}});
        if (!window_)
            return;
        placeInTheMiddle(*window_);
        connect(window_.get(), &QWindow::visibleChanged, this, &OnboardingWindow::visibleChanged);
        connect(model_.get(), &OnboardingViewModel::finished, window_.get(), &QWindow::close);
    }
    bringToFront(*window_);
}

void OnboardingWindow::visibleChanged(bool visible) { visible ? model_->opened() : model_->closed(); }

} // namespace norvane
