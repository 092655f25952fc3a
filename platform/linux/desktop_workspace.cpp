#include "platform/linux/desktop_workspace.h"

#include <QDesktopServices>
#include <QUrl>

namespace norvane {

void DesktopWorkspace::openUrl(const std::string& url) {
    const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
    if (parsed.isValid())
        QDesktopServices::openUrl(parsed);
}

} // namespace norvane
