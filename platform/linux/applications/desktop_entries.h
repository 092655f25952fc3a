// The applications that the desktop knows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/background.h"
#include "platform/command_runner.h"
#include "platform/linux/applications/desktop_entry.h"

namespace norvane {

/// Every entry of the user's and the system's folders that can be started: neither hidden nor without its
/// program (TryExec, Exec). A child process reads them, because their folders may lie on a disk that never
/// answers. Main thread.
class DesktopEntries {
public:
    /// Begins to read them. `reader`: the absolute path of the program desktop-entries. The others must
    /// outlive this object, and `runner` all works of `background`.
    DesktopEntries(Background& background, const CommandRunner& runner, std::string reader);

    /// In no order, as of the last time they could be read; none before the first.
    [[nodiscard]] const std::vector<DesktopEntry>& known() const { return entries_; }

    /// Reads them again, unless that is going on; then, or after some 20 seconds in vain, calls `done`, if
    /// there is one. It is not called while the reader waits for a dead disk and cannot be ended.
    void refresh(std::function<void()> done = {});

private:
    Background& background_;
    const CommandRunner& runner_;
    const std::string reader_;
    std::vector<DesktopEntry> entries_;
    bool reading_ = false;
    std::vector<std::function<void()>> waiting_;
    const Lifetime lifetime_;
};

} // namespace norvane
