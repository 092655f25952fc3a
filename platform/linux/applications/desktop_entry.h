// One application that the desktop knows (freedesktop.org Desktop Entry 1.5), as the program desktop-entries
// hands it over.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct DesktopEntry {
    std::string id; ///< The desktop-file id without ".desktop", such as "org.mozilla.firefox".
    /// The file that Exec starts, with symbolic links resolved. Empty: it is not there, or a shell or an
    /// interpreter that would only start something else.
    std::string program;
    std::string name = {}; ///< In the user's language; empty when the entry has none.
    std::string icon = {}; ///< A name of the icon theme, or a path; empty when the entry has none.
    bool shown = true;     ///< In this desktop's menus.
};

/// As a JSON array. Bytes that are no UTF-8 are replaced.
[[nodiscard]] std::string textOfEntries(const std::vector<DesktopEntry>& entries);

/// None: not the text of entries.
[[nodiscard]] std::optional<std::vector<DesktopEntry>> entriesOfText(std::string_view text);

} // namespace norvane
