#include "ui/menu_bar_label.h"

#include <gtest/gtest.h>

namespace norvane {
namespace {

TEST(MenuBarLabel, RunningComesFirstThenHealthThenPause) {
    ControllerState state;
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"clock.badge.checkmark", LabelColor::template_, ""}));

    state.pausedUntil = Instant{};
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"pause.circle", LabelColor::template_, ""}));

    state.health = BackupHealth::stale;
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"clock.badge.exclamationmark", LabelColor::orange, ""}));
    state.health = BackupHealth::critical;
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"clock.badge.exclamationmark", LabelColor::red, ""}));

    state.status.running = true;
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"arrow.triangle.2.circlepath", LabelColor::template_, ""}));
    state.status.percent = 0.427;
    EXPECT_EQ(menuBarLabel(state).text, "42%");
}

} // namespace
} // namespace norvane
