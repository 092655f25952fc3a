// The applications that the user can choose from.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace norvane {

struct InstalledApplication {
    std::string id;   ///< A desktop-file id without ".desktop", such as "org.mozilla.firefox".
    std::string name; ///< In the user's language; the id where the application has no name.
    std::string icon; ///< A name of the icon theme, or the path of a picture; empty: none.

    bool operator==(const InstalledApplication&) const = default;
};

/// Main thread.
class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;

    /// Those that menus show, in no order, as of the last look.
    [[nodiscard]] virtual std::vector<InstalledApplication> known() const = 0;

    /// Looks again in the background, then calls `done`; not while a disk that it would have to ask is
    /// silent.
    virtual void refresh(std::function<void()> done) = 0;
};

} // namespace norvane
