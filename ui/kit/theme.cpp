#include "ui/kit/theme.h"

#include <QGuiApplication>
#include <cmath>

namespace norvane {

namespace {

/// WCAG 2.1, "relative luminance".
double luminance(const QColor& color) {
    const auto linear = [](double channel) {
        return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

void Theme::set(bool dark, const QColor& accent) {
    if (dark == dark_ && accent == accent_)
        return;
    dark_ = dark;
    accent_ = accent;
    Q_EMIT changed();
}

QColor Theme::onAccent() const {
    constexpr double brightest = 0.5; // beyond it white text is lost
    return luminance(accent_) > brightest ? QColor(Qt::black) : QColor(Qt::white);
}

QColor Theme::faded(const QColor& color, qreal opacity) {
    QColor faded = color;
    faded.setAlphaF(static_cast<float>(color.alphaF() * opacity));
    return faded;
}

QFont Theme::weighted(const QFont& style, int weight) {
    QFont font = style;
    font.setWeight(static_cast<QFont::Weight>(weight));
    return font;
}

QFont Theme::font(int size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

} // namespace norvane
