#include "platform/linux/running_applications.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>
#include <unistd.h>
#include <utility>

#include "platform/linux/application_identity.h"
#include "platform/linux/own_processes.h"

namespace norvane {

/// Finds the file that a name means; remembers, because most names are asked for again and again.
class RunningApplications::Programs {
public:
    explicit Programs(const std::string& searchPath) {
        std::istringstream folders(searchPath);
        for (std::string folder; std::getline(folders, folder, ':');)
            if (folder.starts_with('/'))
                folders_.push_back(folder);
    }

    /// With symbolic links resolved; empty when there is no such program.
    const std::string& file(const std::string& name) {
        const auto [known, isNew] = files_.try_emplace(name);
        if (isNew)
            known->second = find(name);
        return known->second;
    }

private:
    [[nodiscard]] std::string find(const std::string& name) const {
        if (name.find('/') != std::string::npos)
            return name.starts_with('/') ? canonical(name) : std::string();
        for (const std::string& folder : folders_)
            if (const std::string path = std::string(folder).append("/").append(name);
                access(path.c_str(), X_OK) == 0)
                return canonical(path);
        return {};
    }

    static std::string canonical(const std::string& path) {
        const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr), std::free);
        return resolved ? std::string(resolved.get()) : path;
    }

    std::vector<std::string> folders_;
    std::map<std::string, std::string> files_;
};

RunningApplications::Traces RunningApplications::readTraces(const OwnProcess& process, std::string executable,
                                                            Programs& programs) {
    Traces traces{.mark = process.mark(), .executable = std::move(executable), .ids = {}, .files = {}};
    for (auto& id : {applicationOfControlGroup(process.file("cgroup")),
                     applicationOfEnvironment(process.file("environ"), process.id()),
                     applicationOfFlatpakInfo(process.fileInMemory("root/.flatpak-info"))})
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
    Programs programs(searchPath);
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
        if (!entry.executable.empty() && !startsOtherPrograms(entry.executable) &&
            files.contains(programs.file(entry.executable)))
            found.insert(entry.id);
    return found;
}

} // namespace norvane
