#include "platform/linux/applications/running_applications.h"

#include <utility>

#include "platform/linux/applications/application_identity.h"
#include "platform/linux/applications/own_processes.h"
#include "platform/linux/files/program_search.h"

namespace norvane {

RunningApplications::Traces RunningApplications::readTraces(const OwnProcess& process, std::string executable,
                                                            ProgramSearch& programs) {
    Traces traces{.mark = process.mark(), .executable = std::move(executable), .ids = {}, .files = {}};
    for (auto& id : {applicationOfControlGroup(process.file("cgroup")),
                     applicationOfEnvironment(process.file("environ"), process.id()),
                     applicationOfFlatpakInfo(process.fileInItsRoot(".flatpak-info"))})
        if (id)
            traces.ids.push_back(*id);
    for (const std::string& program : programsOfProcess(traces.executable, process.file("cmdline")))
        traces.files.push_back(programs.file(program));
    return traces;
}

std::set<std::string> RunningApplications::now(const std::string& procFolder,
                                               const std::vector<DesktopEntry>& entries,
                                               const std::string& searchPath,
                                               std::chrono::steady_clock::time_point end) {
    ProgramSearch programs(searchPath, ProgramSearch::Reach::prompt);
    const auto earlier = std::exchange(known_, {});
    std::set<std::string> found;
    std::set<std::string> files; // that run
    forEachOwnProcess(procFolder, end, [&](const OwnProcess& process) {
        std::string executable = process.link("exe");
        if (executable.empty())
            return true; // a kernel thread, or one that has ended
        const auto last = earlier.find(process.id());
        const bool seen = last != earlier.end() && last->second.mark == process.mark() &&
                          last->second.executable == executable;
        Traces traces = seen && last->second.confirmed ? last->second
                                                       : readTraces(process, std::move(executable), programs);
        traces.confirmed = seen;
        found.insert(traces.ids.begin(), traces.ids.end());
        files.insert(traces.files.begin(), traces.files.end());
        known_.emplace(process.id(), std::move(traces));
        return true;
    });
    files.erase("");
    for (const DesktopEntry& entry : entries)
        if (files.contains(entry.program))
            found.insert(entry.id);
    return found;
}

} // namespace norvane
