// The login item of a program inside a Flatpak (org.freedesktop.portal.Background, version 1).
#pragma once

#include <memory>
#include <string>

#include "platform/linux/bus/bus_link.h"
#include "platform/login_item.h"
#include "platform/user_defaults.h"

namespace norvane {

/// The portal may ask the user, and tells nobody later what it granted: that is kept in the settings, as the
/// boolean "loginItem.v1".
class PortalLoginItem final : public LoginItem {
public:
    /// The bus and `defaults` must outlive this. `program`: the command inside the sandbox.
    PortalLoginItem(BusLink& sessionBus, UserDefaults& defaults, std::string program);
    ~PortalLoginItem() override;

    [[nodiscard]] bool enabled() const override;
    /// A portal that goes away before it answered is an error.
    void enable(const Done& done) override;
    void disable(const Done& done) override;

private:
    class Request;
    void request(bool autostart, const Done& done);

    BusLink& bus_;
    UserDefaults& defaults_;
    const std::string program_;
    int requests_ = 0;                 // made so far
    std::unique_ptr<Request> request_; // the newest; an older one is no longer told of
};

} // namespace norvane
