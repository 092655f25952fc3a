// User notifications.
#pragma once

#include <string>

namespace norvane {

class Notifications {
public:
    virtual ~Notifications() = default;

    /// Shows a notification at once, with the default sound. Main thread; does not wait. Failure is silent.
    virtual void post(const std::string& title, const std::string& body) = 0;
};

} // namespace norvane
