// The applications that the desktop knows (freedesktop.org Desktop Entry 1.5), through GIO.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace norvane {

struct DesktopEntry {
    std::string id;         ///< The desktop-file id without ".desktop", such as "org.mozilla.firefox".
    std::string path;       ///< Of the file.
    std::string executable; ///< The first word of Exec: a path, or a name to be looked up in PATH.
    std::string name = {};  ///< In the user's language; empty when the entry has none.
    std::string icon = {};  ///< A name of the icon theme, or a path; empty when the entry has none.
    bool shown = true;      ///< In this desktop's menus.
};

/// Every entry of the user's and the system's folders that can be started: neither hidden nor without its
/// program (TryExec, Exec). Main thread.
class DesktopEntries {
public:
    /// In no order. The files are read anew, which takes long, only when one of them has changed.
    [[nodiscard]] const std::vector<DesktopEntry>& current();

private:
    std::map<std::string, std::filesystem::file_time_type> changes_; // of files and folders
    std::vector<DesktopEntry> entries_;
};

} // namespace norvane
