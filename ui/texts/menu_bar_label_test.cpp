#include "ui/texts/menu_bar_label.h"

#include <QPainter>
#include <QSvgRenderer>
#include <gtest/gtest.h>

#include "ui/kit/pictures/symbol_image.h"

namespace norvane {

namespace {

constexpr auto iconFolder = NORVANE_SOURCE_DIR "/ui/kit/icon/symbolic/";

TEST(MenuBarLabel, RunningComesFirstThenHealthThenPause) {
    const auto scheduled = "org.norvane.Norvane-scheduled-symbolic";
    const auto paused = "org.norvane.Norvane-paused-symbolic";
    const auto running = "org.norvane.Norvane-running-symbolic";
    ControllerState state;
    EXPECT_EQ(menuBarLabel(state),
              (MenuBarLabel{"clock.badge.checkmark", LabelColor::template_, "", scheduled}));

    state.pausedUntil = Instant{};
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"pause.circle", LabelColor::template_, "", paused}));

    state.health = BackupHealth::stale;
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"clock.badge.exclamationmark", LabelColor::orange, "", ""}));
    state.health = BackupHealth::critical;
    EXPECT_EQ(menuBarLabel(state), (MenuBarLabel{"clock.badge.exclamationmark", LabelColor::red, "", ""}));

    state.status.running = true;
    EXPECT_EQ(menuBarLabel(state),
              (MenuBarLabel{"arrow.triangle.2.circlepath", LabelColor::template_, "", running}));
    state.status.percent = 0.427;
    EXPECT_EQ(menuBarLabel(state),
              (MenuBarLabel{"arrow.triangle.2.circlepath", LabelColor::template_, "42%", ""}));
}

/// The largest difference in opacity between two drawings, 0 to 255.
int difference(const QImage& one, const QImage& other) {
    int largest = 0;
    for (int y = 0; y < one.height(); ++y)
        for (int x = 0; x < one.width(); ++x)
            largest = std::max(largest, std::abs(qAlpha(one.pixel(x, y)) - qAlpha(other.pixel(x, y))));
    return largest;
}

TEST(MenuBarLabel, TheTraysDrawingsAreTheWindowsSymbols) {
    ControllerState state;
    std::vector<MenuBarLabel> labels = {menuBarLabel(state)};
    state.pausedUntil = Instant{};
    labels.push_back(menuBarLabel(state));
    state.status.running = true;
    labels.push_back(menuBarLabel(state));
    for (const MenuBarLabel& label : labels) {
        constexpr int size = 96;
        QSvgRenderer drawing(iconFolder + QString::fromStdString(label.iconName) + ".svg");
        ASSERT_TRUE(drawing.isValid()) << label.iconName;
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter, QRectF(0, 0, size, size));
        painter.end();
        const QImage symbol = symbolImage(QString::fromStdString(label.symbol), size, Qt::black);
        EXPECT_LT(difference(image, symbol), 160) << label.iconName; // soft edges differ
    }
}

} // namespace

} // namespace norvane
