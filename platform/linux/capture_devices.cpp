#include "platform/linux/capture_devices.h"

#include <glob.h>
#include <string_view>
#include <vector>

#include "platform/linux/own_processes.h"
#include "platform/linux/small_file.h"

namespace norvane {

namespace {

std::vector<std::string> filesMatching(const std::string& pattern) {
    glob_t matches{};
    std::vector<std::string> files;
    if (glob(pattern.c_str(), GLOB_NOSORT, nullptr, &matches) == 0)
        files.assign(matches.gl_pathv, matches.gl_pathv + matches.gl_pathc);
    globfree(&matches);
    return files;
}

bool isMediaServer(const OwnProcess& process) {
    const std::string name = process.file("comm");
    return name == "pipewire\n" || name == "wireplumber\n";
}

} // namespace

bool videoDeviceIsOpen(const std::string& procFolder, const std::string& deviceFolder,
                       std::chrono::steady_clock::time_point end) {
    const std::string prefix = deviceFolder + "/video";
    if (filesMatching(prefix + "*").empty())
        return false; // spares machines without a camera the long way
    bool found = false;
    forEachOwnProcess(procFolder, end, [&](const OwnProcess& process) {
        bool opens = false;
        process.forEachOpenFile([&](std::string_view path) { return !(opens = path.starts_with(prefix)); });
        found = opens && !isMediaServer(process);
        return !found;
    });
    return found;
}

bool soundCardCaptures(const std::string& procFolder) {
    for (const std::string& status : filesMatching(procFolder + "/asound/card*/pcm*c/sub*/status"))
        if (readSmallFile(status, 64).starts_with("state: RUNNING"))
            return true;
    return false;
}

} // namespace norvane
