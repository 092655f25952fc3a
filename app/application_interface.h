// How desktops launch the program and reach its actions: org.freedesktop.Application on the session bus
// (freedesktop.org Desktop Entry 1.5, "D-Bus Activation").
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace norvane {

inline constexpr auto applicationBusName = "org.norvane.Norvane";
inline constexpr auto applicationObjectPath = "/org/norvane/Norvane";

struct ApplicationActions {
    std::function<void()> activate;                     ///< The user opened the running program again.
    std::map<std::string, std::function<void()>> named; ///< By the action's name in the desktop entry.
};

/// Main thread only. Offers the interface while it lives; without a session bus nothing is offered.
class ApplicationInterface {
public:
    explicit ApplicationInterface(ApplicationActions actions);
    ~ApplicationInterface();

private:
    class Object;
    std::unique_ptr<Object> object_;
};

} // namespace norvane
