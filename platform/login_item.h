// Starting the program when the user logs in.
#pragma once

#include <functional>
#include <string>

namespace norvane {

/// Main thread only.
class LoginItem {
public:
    /// What became of a request: empty when it was done, else a readable text of why not.
    using Done = std::function<void(const std::string& error)>;

    virtual ~LoginItem() = default;

    /// As the desktop sees it now.
    [[nodiscard]] virtual bool enabled() const = 0;

    /// Registers the program as a login item. `done` is called on the main thread, at once or, where the user
    /// is asked, later; never when this is gone by then.
    virtual void enable(const Done& done) = 0;
    virtual void disable(const Done& done) = 0;
};

} // namespace norvane
