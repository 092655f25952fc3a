#include "platform/linux/linux_tool_paths.h"

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

ToolPaths chooseTools(const FileSystem& files, const std::string& binFolder) {
    const auto choose = [&](const std::string& name) {
        const std::string systemTool = "/usr/bin/" + name;
        const std::string parent = binFolder.substr(0, binFolder.rfind('/'));
        return files.exists(systemTool) ? systemTool : parent + "/libexec/norvane/" + name;
    };
    return {choose("tmutil"), choose("defaults")};
}

} // namespace norvane
