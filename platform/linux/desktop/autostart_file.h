// The login item as an autostart entry (freedesktop.org Desktop Application Autostart 0.5).
#pragma once

#include <string>
#include <vector>

#include "platform/login_item.h"

namespace norvane {

/// The entry is "org.norvane.Norvane.desktop". The user's own masks those of the system, and means what
/// desktops take it to mean: one that is hidden, switched off or names a program that is gone starts nothing.
class AutostartFile final : public LoginItem {
public:
    struct Folders {
        std::string user;                ///< Need not exist.
        std::vector<std::string> system; ///< Most important first.

        /// "autostart" in $XDG_CONFIG_HOME and in each of $XDG_CONFIG_DIRS.
        [[nodiscard]] static Folders ofUser();
    };

    /// `program`: the absolute path of what the entry starts.
    AutostartFile(Folders folders, std::string program);

    [[nodiscard]] bool enabled() const override;
    void enable(const Done& done) override;
    void disable(const Done& done) override;

private:
    [[nodiscard]] std::string systemFile() const;

    const Folders folders_;
    const std::string userFile_;
    const std::string program_;
};

} // namespace norvane
