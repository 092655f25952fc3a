#include "platform/linux/desktop/desktop_workspace.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>
#include <utility>

#include "platform/linux/files/program_search.h"

namespace norvane {

namespace {

void openWithDesktop(const QUrl& url) {
    // Qt looks for xdg-open on this thread, in every folder of PATH.
    if (ProgramSearch programs(searchPathOfProcess(), ProgramSearch::Reach::prompt); programs.leavesOut())
        QProcess::startDetached(QString::fromStdString(programs.file("xdg-open")),
                                {url.toString(QUrl::FullyEncoded)});
    else
        QDesktopServices::openUrl(url);
}

void openFolderOf(const QString& file) {
    openWithDesktop(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
}

} // namespace

DesktopWorkspace::DesktopWorkspace(OwnUrlHandler own) : own_(std::move(own)) {}

void DesktopWorkspace::openUrl(const std::string& url) {
    const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
    if (!parsed.isValid())
        return;
    // Not by way of the desktop's handlers: in a build tree there is none, and no other program has the pane.
    if (!own_.scheme.empty() && url.starts_with(own_.scheme + ":"))
        QProcess::startDetached(QString::fromStdString(own_.program), {QString::fromStdString(url)});
    else
        openWithDesktop(parsed);
}

void DesktopWorkspace::revealFile(const std::string& path) {
    const QString file = QString::fromStdString(path);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolderOf(file); // a call without a bus would never be answered
        return;
    }
    QDBusMessage call =
        QDBusMessage::createMethodCall("org.freedesktop.FileManager1", "/org/freedesktop/FileManager1",
                                       "org.freedesktop.FileManager1", "ShowItems");
    call.setArguments({QStringList{QUrl::fromLocalFile(file).toString(QUrl::FullyEncoded)}, QString()});
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, file] {
        const QDBusPendingReply<> reply = *watcher;
        if (reply.isError())
            openFolderOf(file);
        watcher->deleteLater();
    });
}

} // namespace norvane
