#include "ui/kit/pictures/application_icon_provider.h"

#include <QIcon>
#include <QUrl>

namespace norvane {

QPixmap ApplicationIconProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) {
    const QString name = QUrl::fromPercentEncoding(id.toUtf8());
    const QIcon icon = name.startsWith('/') ? QIcon(name) : QIcon::fromTheme(name);
    QPixmap picture = icon.pixmap(requestedSize, 1);
    if (picture.isNull()) { // the view would warn of a missing picture
        picture = QPixmap(1, 1);
        picture.fill(Qt::transparent);
    }
    *size = picture.size();
    return picture;
}

} // namespace norvane
