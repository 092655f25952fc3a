// The project's own symbols, tinted.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace norvane {

/// The symbol as a square picture of so many pixels, its ink in `color`, everything else transparent. An
/// empty picture for an unknown symbol.
///
/// The drawings (ui/kit/symbols) have a grid of 24 units and strokes of 2. What is black there is ink, and
/// white on top of black is a hole.
[[nodiscard]] QImage symbolImage(const QString& symbol, int size, const QColor& color);

} // namespace norvane
