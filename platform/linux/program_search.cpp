#include "platform/linux/program_search.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <unistd.h>

#include "platform/linux/mount_table.h"

namespace norvane {

namespace {

/// The root apart: with a dead one nothing runs at all.
std::vector<std::string> foldersThatMayNeverAnswer() {
    std::vector<std::string> folders;
    for (const Mount& mount : mountTable(mountTableText()))
        if (mount.folder != "/" && mayNeverAnswer(mount.type))
            folders.push_back(mount.folder);
    return folders;
}

} // namespace

std::string searchPathOfProcess() {
    const char* const folders = std::getenv("PATH");
    return folders ? folders : "";
}

ProgramSearch::ProgramSearch(const std::string& searchPath, Reach reach) {
    if (reach == Reach::prompt)
        slowFolders_ = foldersThatMayNeverAnswer();
    std::istringstream folders(searchPath);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (mayWait(folder))
            leavesOut_ = true;
        else if (folder.starts_with('/'))
            folders_.push_back(folder);
    }
}

const std::string& ProgramSearch::file(const std::string& name) {
    const auto [known, isNew] = files_.try_emplace(name);
    if (isNew)
        known->second = find(name);
    return known->second;
}

bool ProgramSearch::has(const std::string& name) {
    if (!name.starts_with('/'))
        return !file(name).empty();
    return mayWait(name) || access(name.c_str(), X_OK) == 0;
}

std::string ProgramSearch::find(const std::string& name) const {
    if (name.empty() || name.find('/') != std::string::npos)
        return name.starts_with('/') ? canonical(name) : std::string();
    for (const std::string& folder : folders_)
        if (const std::string path = std::string(folder).append("/").append(name);
            access(path.c_str(), X_OK) == 0)
            return canonical(path);
    return {};
}

std::string ProgramSearch::canonical(const std::string& path) const {
    if (mayWait(path))
        return path;
    const std::unique_ptr<char, void (*)(void*)> resolved(realpath(path.c_str(), nullptr), std::free);
    return resolved ? std::string(resolved.get()) : path;
}

bool ProgramSearch::mayWait(const std::string& path) const {
    return std::any_of(slowFolders_.begin(), slowFolders_.end(),
                       [&](const std::string& folder) { return isWithin(path, folder); });
}

} // namespace norvane
