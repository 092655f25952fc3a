// Lets the windows follow the user's choice of the accent colour while the program runs.
#pragma once

#include <memory>
#include <utility>

#include "controller/backup_controller.h"
#include "ui/kit/theme_updater.h"

namespace norvane {

/// Main thread only. Both must outlive this object.
class AccentChoice {
public:
    AccentChoice(ThemeUpdater& theme, BackupController& controller)
        : subscription_(
              controller.subscribe([&theme, &controller, seen = controller.state().accentEpoch]() mutable {
                  if (std::exchange(seen, controller.state().accentEpoch) != controller.state().accentEpoch)
                      theme.update();
              })) {}

private:
    const std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
