#include "ui/panel/panel.h"

#include <gtest/gtest.h>

#include "ui/kit/theme_updater.h"

namespace norvane {

namespace {

TEST(Panel, OpensBesideTheTrayItemAndOnTheScreen) {
    const QRect screen(0, 24, 1920, 1056);
    const QSize size(320, 400);
    struct Case {
        QPoint anchor;
        QPoint position;
    };
    for (const Case& c : {Case{{960, 24}, {800, 28}},     // a bar at the top
                          Case{{1910, 10}, {1600, 24}},   // in its right corner
                          Case{{5, 1079}, {0, 675}},      // a bar at the bottom, left
                          Case{{960, 1070}, {800, 666}}}) // above the click
        EXPECT_EQ(panelPosition(c.anchor, size, screen), c.position) << c.anchor.x() << "," << c.anchor.y();
    EXPECT_EQ(panelPosition({50, 50}, {3000, 3000}, screen), QPoint(0, 24)); // larger than the screen
}

TEST(Theme, TheAccentIsTheBrandsUnlessTheUserChoseOne) {
    const Rgb blue{0, 0, 1};
    EXPECT_EQ(appAccentColor(false, {}), brandOrange);
    EXPECT_EQ(appAccentColor(true, blue), brandOrange);
    EXPECT_EQ(appAccentColor(false, blue), QColor(0, 0, 255));
    EXPECT_EQ(Theme(false, QColor(0, 0, 255)).onAccent(), QColor(Qt::white));
    EXPECT_EQ(Theme(false, QColor(255, 230, 0)).onAccent(), QColor(Qt::black));
}

} // namespace

} // namespace norvane
