#include "ui/texts/menu_bar_label.h"

#include "platform/translator.h"

namespace norvane {

MenuBarLabel menuBarLabel(const ControllerState& state) {
    const auto uncolored = [](const char* symbol, const std::string& icon) -> MenuBarLabel {
        return {symbol, LabelColor::template_, "", "org.norvane.Norvane-" + icon + "-symbolic"};
    };
    if (state.status.running) {
        const auto* const symbol = "arrow.triangle.2.circlepath";
        const std::optional<double> percent = state.status.percent;
        if (!percent)
            return uncolored(symbol, "running");
        return {symbol, LabelColor::template_, fillIn("%d%%", {static_cast<std::int64_t>(*percent * 100)}),
                ""};
    }
    switch (state.health) {
    case BackupHealth::critical:
        return {"clock.badge.exclamationmark", LabelColor::red, "", ""};
    case BackupHealth::stale:
        return {"clock.badge.exclamationmark", LabelColor::orange, "", ""};
    case BackupHealth::ok:
        break;
    }
    return state.pausedUntil ? uncolored("pause.circle", "paused")
                             : uncolored("clock.badge.checkmark", "scheduled");
}

} // namespace norvane
