// The `defaults` program: reading and changing stored settings from the command line (defaults(1)).
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace norvane {

/// What the program was started with.
struct DefaultsCall {
    std::vector<std::string> arguments; ///< Without the program's name.
    std::string logHeader;              ///< Stands before errors of reading: "<time> defaults[<pid>:<tid>] ".
};

/// Runs one call. Returns the exit code: 0; 1 when the domain or key is missing, or something could not be
/// read or stored; 255 when the arguments make no command.
[[nodiscard]] int runDefaults(const DefaultsCall& call, std::istream& in, std::ostream& out,
                              std::ostream& err);

} // namespace norvane
