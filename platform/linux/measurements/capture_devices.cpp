#include "platform/linux/measurements/capture_devices.h"

#include <array>
#include <glob.h>
#include <string_view>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

#include "platform/linux/applications/own_processes.h"
#include "platform/linux/files/small_file.h"

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

VideoDevices::VideoDevices(std::string procFolder, const std::string& deviceFolder)
    : procFolder_(std::move(procFolder)), prefix_(deviceFolder + "/video"),
      openings_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {}

bool VideoDevices::inUse(std::chrono::steady_clock::time_point end) {
    const std::vector<std::string> devices = filesMatching(prefix_ + "*");
    // The long way through all processes is spared where there is no camera, and where none was opened.
    if (devices.empty() || (!mayBeOpened(devices) && idle_))
        return false;
    const std::optional<bool> open = areOpen(end);
    idle_ = open == false;
    return open.value_or(false);
}

/// Since the last call.
bool VideoDevices::mayBeOpened(const std::vector<std::string>& devices) {
    bool may = false;
    std::set<int> watched;
    for (const std::string& device : devices) {
        const int watch = inotify_add_watch(openings_.get(), device.c_str(), IN_OPEN);
        may |= watch < 0 || !watched_.contains(watch);
        watched.insert(watch);
    }
    watched_ = std::move(watched);
    alignas(inotify_event) std::array<char, 4096> events;
    while (read(openings_.get(), events.data(), events.size()) > 0)
        may = true;
    return may;
}

std::optional<bool> VideoDevices::areOpen(std::chrono::steady_clock::time_point end) const {
    bool found = false, readable = true;
    const bool listed = forEachOwnProcess(procFolder_, end, [&](const OwnProcess& process) {
        bool opens = false;
        readable &= process.forEachOpenFile(
            [&](std::string_view path) { return !(opens = path.starts_with(prefix_)); });
        found = opens && !isMediaServer(process);
        return !found;
    });
    return found || (listed && readable) ? std::optional(found) : std::nullopt;
}

bool soundCardCaptures(const std::string& procFolder) {
    for (const std::string& status : filesMatching(procFolder + "/asound/card*/pcm*c/sub*/status"))
        if (readSmallFile(status, 64).starts_with("state: RUNNING"))
            return true;
    return false;
}

} // namespace norvane
