#include "platform/linux/desktop_workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace norvane {

void DesktopWorkspace::openUrl(const std::string& url) {
    const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
    if (parsed.isValid())
        QDesktopServices::openUrl(parsed);
}

void DesktopWorkspace::revealFile(const std::string& path) {
    const QString file = QString::fromStdString(path);
    QDBusMessage call =
        QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                       "org.freedesktop.FileManager1", "ShowItems");
    call.setArguments({QStringList{QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)}, QString()});
    auto* const watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, file] {
        const QDBusPendingReply<> reply = *watcher;
        if (reply.isError())
            QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
        watcher->deleteLater();
    });
}

} // namespace norvane
