#include "platform/linux/desktop/desktop_email_composer.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusUnixFileDescriptor>
#include <QProcess>
#include <fcntl.h>
#include <utility>

#include "platform/linux/bus/desktop_portal.h"
#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/program_search.h"

namespace norvane {

namespace {

constexpr int portalTimeoutMilliseconds = 5000;

QDBusMessage composeCall(const Email& email, const QDBusUnixFileDescriptor& attachment) {
    const QVariantMap options = {
        {"addresses", QStringList(QString::fromStdString(email.recipient))},
        {"subject", QString::fromStdString(email.subject)},
        {"body", QString::fromStdString(email.body)},
        {"attachment_fds", QVariant::fromValue(QList<QDBusUnixFileDescriptor>{attachment})}};
    const QString noParentWindow = "";
    return portalCall("Email", "ComposeEmail", {noParentWindow, options});
}

void composeByTool(const Email& email) {
    // Qt would look for it in folders that may never answer.
    ProgramSearch programs(searchPathOfProcess(), ProgramSearch::Reach::prompt);
    QProcess tool;
    tool.setProgram(QString::fromStdString(programs.file("xdg-email")));
    tool.setArguments({"--utf8", "--subject", QString::fromStdString(email.subject), "--body",
                       QString::fromStdString(email.body), "--attach",
                       QString::fromStdString(email.attachment), QString::fromStdString(email.recipient)});
    tool.setStandardOutputFile(QProcess::nullDevice());
    tool.setStandardErrorFile(QProcess::nullDevice());
    tool.startDetached();
}

} // namespace

DesktopEmailComposer::DesktopEmailComposer(QDBusConnection sessionBus) : bus_(std::move(sessionBus)) {
    qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
}

void DesktopEmailComposer::compose(const Email& email) {
    const FileDescriptor file(open(email.attachment.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file)
        return;
    if (!bus_.isConnected()) {
        composeByTool(email); // a call without a bus would never be answered
        return;
    }
    auto* const answer = new QDBusPendingCallWatcher(
        bus_.asyncCall(composeCall(email, QDBusUnixFileDescriptor(file.get())), portalTimeoutMilliseconds),
        &pendingCalls_);
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &pendingCalls_, [answer, email] {
        if (answer->isError())
            composeByTool(email);
        answer->deleteLater();
    });
}

} // namespace norvane
