#include "platform/linux/desktop_workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <gio/gio.h>
#include <utility>

namespace norvane {

namespace {

bool isRegistered(const std::string& scheme) {
    GAppInfo* const handler = g_app_info_get_default_for_uri_scheme(scheme.c_str());
    if (handler)
        g_object_unref(handler);
    return handler != nullptr;
}

} // namespace

DesktopWorkspace::DesktopWorkspace(OwnUrlHandler own) : own_(std::move(own)) {}

void DesktopWorkspace::openUrl(const std::string& url) {
    const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
    if (!parsed.isValid())
        return;
    const bool ours = !own_.scheme.empty() && url.starts_with(own_.scheme + ":");
    if (ours && !isRegistered(own_.scheme))
        QProcess::startDetached(QString::fromStdString(own_.program), {QString::fromStdString(url)});
    else
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
