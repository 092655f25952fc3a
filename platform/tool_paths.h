// Where the two command-line tools are that everything about Time Machine goes through.
#pragma once

#include <string>

namespace norvane {

struct ToolPaths {
    std::string tmutil;   ///< Absolute; "/usr/bin/tmutil" where the system has one.
    std::string defaults; ///< Absolute; "/usr/bin/defaults" where the system has one.
};

} // namespace norvane
