// Notifications through org.freedesktop.Notifications (freedesktop.org Desktop Notifications 1.2).
#pragma once

#include <memory>

#include "platform/linux/bus/bus_link.h"
#include "platform/notifications.h"

namespace norvane {

/// Works with every notification daemon that comes, on a new bus too: what one daemon has shown, the next one
/// knows nothing of. Without a bus or a daemon every notification is dropped; while a daemon hangs, only
/// the newest about each matter waits for it.
class DBusNotifications final : public Notifications {
public:
    /// The bus must outlive this.
    explicit DBusNotifications(BusLink& sessionBus);
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
