// Where the files are that come with the program, and choosing the tools: the system's where it has them,
// else its own.
#pragma once

#include <string>

#include "platform/file_system.h"
#include "platform/tool_paths.h"

namespace norvane {

/// The folder of the running program, from /proc/self/exe; empty when unknown.
[[nodiscard]] std::string programFolder();

/// Where the tools are that come with the program in `binFolder`: ../libexec/norvane from there, in the build
/// tree as in the installed one.
[[nodiscard]] std::string ownToolsFolder(const std::string& binFolder);

/// Where the program's icon theme "hicolor" is: ../share/icons from `binFolder`, in both trees.
[[nodiscard]] std::string ownIconsFolder(const std::string& binFolder);

/// `binFolder`: where this program lies.
[[nodiscard]] ToolPaths chooseTools(const FileSystem& files, const std::string& binFolder);

} // namespace norvane
