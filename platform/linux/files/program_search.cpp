#include "platform/linux/files/program_search.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <sstream>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "platform/linux/files/mount_table.h"

namespace norvane {

namespace fs = std::filesystem;

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

std::optional<std::string> findProgram(const std::string& name) {
    const char* variable = std::getenv("PATH");
    std::string_view rest = variable ? variable : "/usr/local/bin:/usr/bin:/bin";
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        const std::string path = std::string(rest.substr(0, end)) + "/" + name;
        if (path.starts_with('/') && ::access(path.c_str(), X_OK) == 0)
            return path;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return std::nullopt;
}

ProgramSearch::ProgramSearch(const std::string& searchPath, Reach reach) {
    if (reach == Reach::prompt)
        slowFolders_ = foldersThatMayNeverAnswer();
    std::istringstream folders(searchPath);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (!folder.starts_with('/'))
            continue;
        folder = resolved(folder);
        if (mayWait(folder))
            leavesOut_ = true;
        else
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
    const std::string& path = file(name);
    return !path.empty() && canBeStarted(path);
}

std::string ProgramSearch::find(const std::string& name) const {
    if (name.empty() || name.find('/') != std::string::npos)
        return name.starts_with('/') ? resolved(name) : std::string();
    for (const std::string& folder : folders_)
        if (std::string path = resolved(std::string(folder).append("/").append(name)); canBeStarted(path))
            return path;
    return {};
}

/// realpath(3) would ask the file systems that are left out.
std::string ProgramSearch::resolved(const std::string& path) const {
    constexpr int mostLinks = 40; // as the kernel follows
    const fs::path given = fs::path(path).relative_path();
    std::deque<fs::path> rest(given.begin(), given.end());
    fs::path done = "/";
    for (int links = 0; !rest.empty() && !mayWait(done);) {
        const fs::path part = rest.front();
        rest.pop_front();
        if (part == "..")
            done = done.parent_path();
        if (part.empty() || part == "." || part == "..")
            continue;
        const fs::path next = done / part;
        std::error_code isNoLink;
        const fs::path target = mayWait(next) ? fs::path() : fs::read_symlink(next, isNoLink);
        if (target.empty())
            done = next;
        else if (++links > mostLinks)
            return path;
        else if (target.is_absolute())
            done = "/";
        const fs::path below = target.relative_path();
        rest.insert(rest.begin(), below.begin(), below.end());
    }
    for (const fs::path& part : rest)
        done /= part;
    return done;
}

bool ProgramSearch::canBeStarted(const std::string& path) const {
    std::error_code unknown;
    return mayWait(path) || (fs::is_regular_file(path, unknown) && access(path.c_str(), X_OK) == 0);
}

bool ProgramSearch::mayWait(const std::string& path) const {
    return std::any_of(slowFolders_.begin(), slowFolders_.end(),
                       [&](const std::string& folder) { return isWithin(path, folder); });
}

} // namespace norvane
