// Where this user's files live (XDG Base Directory 0.8).
#pragma once

#include <string>
#include <string_view>

namespace norvane {

/// The user's home folder: $HOME, else the account's entry in the user database.
[[nodiscard]] std::string homeFolder();

/// $XDG_CONFIG_HOME/norvane, by default ~/.config/norvane: the preferences of every domain.
[[nodiscard]] std::string preferencesFolder();

/// $XDG_STATE_HOME/norvane, by default ~/.local/state/norvane: what a Mac keeps in the user's Library.
[[nodiscard]] std::string libraryFolder();

/// The file that holds a domain: "org.norvane.Norvane" → <preferencesFolder>/org.norvane.Norvane.plist.
[[nodiscard]] std::string preferencesFile(std::string_view domain);

/// Makes the folder and its parents, for this user alone (mode 0700). False: it is not there and cannot be
/// made.
bool makeFolder(const std::string& path);

} // namespace norvane
