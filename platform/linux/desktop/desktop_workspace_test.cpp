#include "platform/linux/desktop/desktop_workspace.h"

#include <QDesktopServices>
#include <QUrl>

#include "tests/support/session_test.h"

namespace norvane {

namespace {

/// Stands for the program that shows folders.
class FolderProgram final : public QObject {
    Q_OBJECT

public:
    FolderProgram() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~FolderProgram() override { QDesktopServices::unsetUrlHandler("file"); }

    Q_SLOT void open(const QUrl& url) { opened = url; }

    QUrl opened;
};

TEST(DesktopWorkspace, ShowsTheFolderWhereNoFileManagerIsAsked) {
    // A process opens the session bus once; here there is none.
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent", 1);
    ASSERT_FALSE(QDBusConnection::sessionBus().isConnected());
    const FolderProgram program;
    DesktopWorkspace().revealFile("/folder/a file");
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(program.opened, QUrl::fromLocalFile("/folder"));
}

} // namespace

} // namespace norvane

#include "desktop_workspace_test.moc"
