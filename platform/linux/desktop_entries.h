// The applications that the desktop knows (freedesktop.org Desktop Entry 1.5), through GIO.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/background.h"

namespace norvane {

class ProgramSearch;

struct DesktopEntry {
    std::string id; ///< The desktop-file id without ".desktop", such as "org.mozilla.firefox".
    /// The file that Exec starts, with symbolic links resolved. Empty: it is not there, or a shell or an
    /// interpreter that would only start something else.
    std::string program;
    std::string name = {}; ///< In the user's language; empty when the entry has none.
    std::string icon = {}; ///< A name of the icon theme, or a path; empty when the entry has none.
    bool shown = true;     ///< In this desktop's menus.
};

/// The program of an entry whose Exec begins with this word. May wait for a disk. `programs`: those of PATH.
[[nodiscard]] std::string programOfEntry(const std::string& executable, ProgramSearch& programs);

/// Every entry of the user's and the system's folders that can be started: neither hidden nor without its
/// program (TryExec, Exec). They are read in the background, because their folders may lie on a disk that
/// never answers. Main thread.
class DesktopEntries {
public:
    /// Begins to read them. `background` must outlive this object.
    explicit DesktopEntries(Background& background);

    /// In no order, as of the last time they were read; none before the first.
    [[nodiscard]] const std::vector<DesktopEntry>& known() const { return entries_; }

    /// Reads them again, unless that is going on; then calls `done`, if there is one.
    void refresh(std::function<void()> done = {});

private:
    Background& background_;
    std::vector<DesktopEntry> entries_;
    bool reading_ = false;
    std::vector<std::function<void()>> waiting_;
    const Lifetime lifetime_;
};

} // namespace norvane
