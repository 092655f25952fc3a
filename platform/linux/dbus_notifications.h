// Notifications through org.freedesktop.Notifications (freedesktop.org Desktop Notifications 1.2).
#pragma once

#include <QDBusConnection>
#include <memory>

#include "platform/notifications.h"

namespace norvane {

/// Works with every notification daemon that comes while the bus lives: what one daemon has shown, the next
/// one knows nothing of. Without a bus or a daemon every notification is dropped; while a daemon hangs, only
/// the newest about each matter waits for it.
class DBusNotifications final : public Notifications {
public:
    explicit DBusNotifications(const QDBusConnection& sessionBus);
    ~DBusNotifications() override;

    void post(const Notification& notification) override;
    /// Starts the daemon; outside a sandbox nobody has to be asked.
    void requestPermission() override;
    void onAnswer(NotificationAnswers answers) override;

private:
    class Object;
    const std::unique_ptr<Object> object_;
};

} // namespace norvane
