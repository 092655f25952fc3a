#include "ui/tray_symbol.h"

#include <QPainter>
#include <QSvgRenderer>

namespace norvane {

QImage symbolImage(const QString& symbol, int size, const QColor& color) {
    QSvgRenderer drawing(":/symbols/" + symbol + ".svg");
    if (!drawing.isValid())
        return {};
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter, QRectF(0, 0, size, size));
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

} // namespace norvane
