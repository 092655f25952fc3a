// Symbols for views: "image://symbol/<name>/<colour>", the colour as QML prints it.
#pragma once

#include <QQuickImageProvider>

namespace norvane {

class SymbolProvider final : public QQuickImageProvider {
public:
    SymbolProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

    /// Drawn in exactly the pixels that are asked for.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace norvane
