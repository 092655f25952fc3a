// Notifications through the portal, for a program inside a Flatpak (org.freedesktop.portal.Notification,
// version 1).
#pragma once

#include <memory>

#include "platform/linux/bus/bus_link.h"
#include "platform/notifications.h"

namespace norvane {

/// The portal keeps one notification a matter, across restarts of whoever shows it. Without a bus or a portal
/// every notification is dropped.
class PortalNotifications final : public Notifications {
public:
    /// The bus must outlive this.
    explicit PortalNotifications(BusLink& sessionBus);
    ~PortalNotifications() override;

    void post(const Notification& notification) override;
    /// Nothing to do: the portal asks the user by itself where the desktop wants it.
    void requestPermission() override {}
    void onAnswer(NotificationAnswers answers) override;

private:
    class Object;
    const std::unique_ptr<Object> object_;
};

} // namespace norvane
