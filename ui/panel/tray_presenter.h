// Keeps the tray item in step with the controller.
#pragma once

#include <memory>
#include <optional>

#include "controller/backup_controller.h"
#include "platform/tray_item.h"
#include "ui/kit/debouncer.h"
#include "ui/texts/menu_bar_label.h"

namespace norvane {

/// Main thread only. Redraws only when something visible has changed, once for any number of changes in a
/// row.
class TrayPresenter {
public:
    TrayPresenter(BackupController& controller, TrayItem& item, const Clock& clock, Timers& timers,
                  const Formats& formats, const Translator& translator);

private:
    void present();

    BackupController& controller_;
    TrayItem& item_;
    const Clock& clock_;
    const Formats& formats_;
    const Translator& translator_;
    std::optional<MenuBarLabel> drawn_;
    TrayAppearance appearance_;
    Debouncer soon_;
    std::unique_ptr<BackupController::Subscription> subscription_;
};

} // namespace norvane
