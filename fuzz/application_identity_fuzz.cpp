#include <algorithm>

#include "fuzz/fuzz.h"
#include "platform/linux/applications/application_identity.h"

namespace norvane {

/// The whole is each of the notes that a process may carry; its first line is an executable's path, the rest
/// how that was called.
void fuzz(std::string_view input) {
    for (const auto& id : {applicationOfControlGroup(input), applicationOfEnvironment(input, "42"),
                           applicationOfFlatpakInfo(input)})
        check(!id || !id->empty(), "An application has a name.");
    const std::size_t end = std::min(input.find('\n'), input.size());
    const auto programs =
        programsOfProcess(std::string(input.substr(0, end)), input.substr(std::min(end + 1, input.size())));
    check(programs.size() <= 3, "A process has few names.");
    for (const std::string& program : programs)
        check(!program.empty(), "A program has a name.");
}

} // namespace norvane
