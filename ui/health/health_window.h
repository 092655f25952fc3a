// The Health window on the screen.
#pragma once

#include "ui/health/health_view_model.h"
#include "ui/kit/kept_window.h"

namespace norvane {

/// Main thread only.
class HealthWindow {
public:
    HealthWindow(UiEngine& engine, HealthServices services, HealthActions actions)
        : model_(std::move(services), std::move(actions)),
          window_(engine, "Health/HealthWindow", QVariant::fromValue(&model_),
                  {[this] { model_.opened(); }, [this] { model_.closed(); }}) {}

    /// Shows the window, in front of others, and reads the records anew.
    void open() {
        model_.refresh();
        window_.open();
    }

private:
    HealthViewModel model_;
    KeptWindow window_;
};

} // namespace norvane
