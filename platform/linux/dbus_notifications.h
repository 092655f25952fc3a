// Notifications through org.freedesktop.Notifications (freedesktop.org Desktop Notifications 1.2).
#pragma once

#include "platform/notifications.h"

namespace norvane {

/// Without a session bus or a notification daemon every notification is dropped at once.
class DBusNotifications final : public Notifications {
public:
    void post(const std::string& title, const std::string& body) override;
};

} // namespace norvane
