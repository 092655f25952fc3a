// What the tray item shows, derived from the controller's state.
#pragma once

#include <string>

#include "controller/controller_state.h"

namespace norvane {

enum class LabelColor {
    template_, ///< The tray's own foreground.
    orange,
    red,
};

struct MenuBarLabel {
    std::string symbol; ///< Name of a drawing in ui/kit/symbols.
    LabelColor color = LabelColor::template_;
    std::string text; ///< "42%" while a backup runs and the percentage is known; else empty.
    /// Of the drawing in ui/panel/icon/symbolic that looks like the symbol, for trays that draw in their own
    /// colour; empty where the symbol has one or the text has to be in the picture.
    std::string iconName;

    bool operator==(const MenuBarLabel&) const = default;
};

[[nodiscard]] MenuBarLabel menuBarLabel(const ControllerState& state);

} // namespace norvane
