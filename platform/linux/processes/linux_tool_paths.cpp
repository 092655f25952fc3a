#include "platform/linux/processes/linux_tool_paths.h"

#include <array>
#include <climits>
#include <unistd.h>

namespace norvane {

std::string programFolder() {
    std::array<char, PATH_MAX> path{};
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    const std::string program(path.data(), static_cast<std::size_t>(length > 0 ? length : 0));
    return program.substr(0, program.rfind('/') == std::string::npos ? 0 : program.rfind('/'));
}

static std::string prefixOf(const std::string& binFolder) {
    return binFolder.substr(0, binFolder.rfind('/'));
}

std::string ownToolsFolder(const std::string& binFolder) { return prefixOf(binFolder) + "/libexec/norvane"; }

std::string ownIconsFolder(const std::string& binFolder) { return prefixOf(binFolder) + "/share/icons"; }

ToolPaths chooseTools(const FileSystem& files, const std::string& binFolder) {
    ToolPaths ofSystem{"/usr/bin/tmutil", "/usr/bin/defaults"};
    // Both or none: other packages bring a "defaults" that knows nothing of Time Machine.
    if (files.exists(ofSystem.tmutil) && files.exists(ofSystem.defaults))
        return ofSystem;
    const std::string own = ownToolsFolder(binFolder);
    return {own + "/tmutil", own + "/defaults"};
}

} // namespace norvane
