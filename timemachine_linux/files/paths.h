// Absolute paths as plain bytes, and how the preferences hold them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/text/property_list.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

/// The path with its parent folder resolved by realpath(3), so that it can be compared with what a walk of
/// the folders meets; the last component stays as it is, even when it is a symbolic link. Relative paths
/// start at the working directory. Fails where there is no parent.
[[nodiscard]] Result<std::string> resolvedPath(const std::string& path);

/// The path with every symbolic link resolved. Fails where there is nothing.
[[nodiscard]] Result<std::string> canonicalPath(const std::string& path);

/// The folder of an absolute path; empty for one right below the root, so that a slash can follow.
[[nodiscard]] std::string parentOf(const std::string& path);

/// The last component.
[[nodiscard]] std::string nameOf(const std::string& path);

/// Whether the bytes are UTF-8 without control characters, as one line of output needs it.
[[nodiscard]] bool isPrintableUtf8(std::string_view bytes);

/// The text with each byte that is not UTF-8 or a control character as a backslash, a number sign and three
/// octal digits, as rsync writes them: fit for a line of a log and for the preferences.
[[nodiscard]] std::string printable(std::string_view bytes);

/// A path is stored as a string if it can be one, else as data: file names are any bytes.
[[nodiscard]] PropertyList pathToPropertyList(const std::string& path);

/// The absolute paths of a stored array; "~/" at the start stands for the home folder, other entries are
/// skipped.
[[nodiscard]] std::vector<std::string> pathsFromPropertyList(const PropertyList& list,
                                                             const std::string& home);

} // namespace norvane
