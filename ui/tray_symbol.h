// The project's own symbols, drawn in one colour.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace norvane {

/// The symbol as a square picture, every stroke in `color`. An empty picture for an unknown symbol.
[[nodiscard]] QImage symbolImage(const QString& symbol, int size, const QColor& color);

} // namespace norvane
