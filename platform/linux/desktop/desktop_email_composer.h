// E-mail through the desktop.
#pragma once

#include <QDBusConnection>
#include <QObject>

#include "platform/email_composer.h"

namespace norvane {

/// By the portal (org.freedesktop.portal.Email, version 3); where it is missing or silent for some seconds,
/// by xdg-email(1), which drops line feeds at the end of the body. Main thread, with an event loop.
class DesktopEmailComposer final : public EmailComposer {
public:
    explicit DesktopEmailComposer(QDBusConnection sessionBus);

    void compose(const Email& email) override;

private:
    QDBusConnection bus_;
    QObject pendingCalls_; ///< Owns them; the composer gone, nothing more happens.
};

} // namespace norvane
