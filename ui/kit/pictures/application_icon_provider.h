// Icons of installed applications for views: "image://application/<icon>", percent-encoded.
#pragma once

#include <QQuickImageProvider>

namespace norvane {

class ApplicationIconProvider final : public QQuickImageProvider {
public:
    ApplicationIconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

    /// A name of the icon theme or a path. One that leads nowhere gives a single transparent pixel.
    QPixmap requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace norvane
