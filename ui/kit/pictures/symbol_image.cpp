#include "ui/kit/pictures/symbol_image.h"

#include <QPainter>
#include <QSvgRenderer>

namespace norvane {

namespace {

/// A colour of this opacity, as QImage stores it with premultiplied alpha.
QRgb premultiplied(const QColor& color, int opacity) {
    const QRgb rgb = color.rgba();
    return qPremultiply(qRgba(qRed(rgb), qGreen(rgb), qBlue(rgb), qAlpha(rgb) * opacity / 255));
}

} // namespace

QImage symbolImage(const QString& symbol, int size, const QColor& color) {
    QSvgRenderer drawing(":/symbols/" + symbol + ".svg");
    if (!drawing.isValid())
        return {};
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter, QRectF(0, 0, size, size));
    painter.end();
    for (int y = 0; y < size; ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size; ++x)
            row[x] = premultiplied(color, qAlpha(row[x]) - qRed(row[x])); // white carries its opacity as red
    }
    return image;
}

} // namespace norvane
