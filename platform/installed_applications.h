// The applications that the user can choose from.
#pragma once

#include <string>
#include <vector>

namespace norvane {

struct InstalledApplication {
    std::string id;   ///< A desktop-file id without ".desktop", such as "org.mozilla.firefox".
    std::string name; ///< In the user's language; the id where the application has no name.
    std::string icon; ///< A name of the icon theme, or the path of a picture; empty: none.

    bool operator==(const InstalledApplication&) const = default;
};

class InstalledApplications {
public:
    virtual ~InstalledApplications() = default;

    /// Those that menus show, in no order. Main thread; may take some ten milliseconds.
    [[nodiscard]] virtual std::vector<InstalledApplication> all() = 0;
};

} // namespace norvane
