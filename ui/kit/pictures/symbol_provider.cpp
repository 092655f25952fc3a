#include "ui/kit/pictures/symbol_provider.h"

#include "ui/kit/pictures/symbol_image.h"

namespace norvane {

QImage SymbolProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    constexpr int defaultPixels = 24;
    const int pixels = requestedSize.width() > 0 ? requestedSize.width() : defaultPixels;
    QImage image = symbolImage(id.section('/', 0, 0), pixels, QColor(id.section('/', 1)));
    *size = image.size();
    return image;
}

} // namespace norvane
