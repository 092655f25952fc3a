#include "ui/menu_bar_label.h"

namespace norvane {

MenuBarLabel menuBarLabel(const ControllerState& state) {
    if (state.status.running) {
        const std::optional<double> percent = state.status.percent;
        return {"arrow.triangle.2.circlepath", LabelColor::template_,
                percent ? std::to_string(static_cast<int>(*percent * 100)) + "%" : ""};
    }
    switch (state.health) {
    case BackupHealth::critical:
        return {"clock.badge.exclamationmark", LabelColor::red, ""};
    case BackupHealth::stale:
        return {"clock.badge.exclamationmark", LabelColor::orange, ""};
    case BackupHealth::ok:
        break;
    }
    return {state.pausedUntil ? "pause.circle" : "clock.badge.checkmark", LabelColor::template_, ""};
}

} // namespace norvane
