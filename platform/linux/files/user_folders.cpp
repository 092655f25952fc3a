#include "platform/linux/files/user_folders.h"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace norvane {

namespace {

/// The variable's value if it is an absolute path: relative ones are to be ignored (XDG Base Directory 0.8).
std::string absolutePath(const char* variable) {
    const char* const value = std::getenv(variable);
    return value && *value == '/' ? value : "";
}

std::string accountFolder() {
    std::array<char, 16384> buffer{};
    struct passwd account {};
    struct passwd* found = nullptr;
    if (getpwuid_r(getuid(), &account, buffer.data(), buffer.size(), &found) != 0 || !found || !found->pw_dir)
        return "/";
    return found->pw_dir;
}

std::string baseFolder(const char* variable, const char* fallbackInHome) {
    const std::string folder = absolutePath(variable);
    return (folder.empty() ? homeFolder() + fallbackInHome : folder) + "/norvane";
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

std::string homeFolder() {
    const std::string folder = absolutePath("HOME");
    return folder.empty() ? accountFolder() : folder;
}

std::string preferencesFolder() { return baseFolder("XDG_CONFIG_HOME", "/.config"); }

std::string libraryFolder() { return baseFolder("XDG_STATE_HOME", "/.local/state"); }

std::string preferencesFile(std::string_view domain) {
    return preferencesFolder().append("/").append(domain).append(".plist");
}

bool makeFolder(const std::string& path) {
    if (isFolder(path))
        return true;
    // Most of these exist. What one failure means, the last call tells.
    for (std::size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        ::mkdir(path.substr(0, end).c_str(), S_IRWXU);
    return ::mkdir(path.c_str(), S_IRWXU) == 0 || isFolder(path);
}

} // namespace norvane
