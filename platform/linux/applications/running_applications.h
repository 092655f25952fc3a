// The applications that this user runs.
#pragma once

#include <chrono>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/linux/applications/desktop_entries.h"
#include "platform/linux/applications/own_processes.h"

namespace norvane {

class ProgramSearch;

class RunningApplications {
public:
    /// Identifiers of all applications to which one of the user's processes belongs: by its control group, by
    /// the note of the launcher, by its sandbox, or because it runs an entry's program. Entries that share a
    /// program all count. `searchPath`: as in $PATH. Processes beyond the time limit are not looked at, nor
    /// is any file on a file system that may never answer.
    [[nodiscard]] std::set<std::string> now(const std::string& procFolder,
                                            const std::vector<DesktopEntry>& entries,
                                            const std::string& searchPath,
                                            std::chrono::steady_clock::time_point end);

private:
    /// What a process told of itself. It is kept because reading it takes long, and changes only while the
    /// process is being started.
    struct Traces {
        OwnProcess::Mark mark;
        std::string executable;
        std::vector<std::string> ids;   ///< By launchers.
        std::vector<std::string> files; ///< Of the programs that it may be.
        bool confirmed = false;         ///< Read again by a later look than the one that found the process.
    };
    static Traces readTraces(const OwnProcess& process, std::string executable, ProgramSearch& programs);

    std::map<std::string, Traces> known_; // by process id, as of the last look
};

} // namespace norvane
