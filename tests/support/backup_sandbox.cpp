#include "tests/support/backup_sandbox.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/files/small_file.h"
#include "platform/linux/files/user_folders.h"
#include "platform/text/property_list_text.h"
#include "timemachine_linux/files/file_lock.h"
#include "timemachine_linux/files/preferences.h"

namespace norvane {

namespace {

void hashInto(std::uint64_t& hash, const std::string& text) {
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15U;
    hash = (hash ^ std::hash<std::string>{}(text)) * multiplier;
}

} // namespace

BackupSandbox::Home::Home(const ScratchFolder& root) {
    std::filesystem::create_directories(root.path("home/tree"));
    std::filesystem::create_directories(root.path("disk"));
    ::setenv("HOME", root.path("home").c_str(), 1);
    ::setenv("PATH", (root.path("bin") + ":/usr/bin:/bin:/usr/sbin:/sbin").c_str(), 1);
    for (const char* name : {"XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME", "RSYNC_PROXY"})
        ::unsetenv(name);
}

BackupSandbox::BackupSandbox()
    : preferences(timeMachinePreferences()), session(libraryFolder() + "/TimeMachine") {
    makeFolder(preferencesFolder());
    addSystemctl();
    preferences.set("SourceFolders", {PropertyList::Array{{tree()}}});
}

BackupSandbox::~BackupSandbox() {
    (void)tmutil({"stopbackup"});
    (void)eventually(
        [&] { return !FileLock::isHeld(session.runLock) && !FileLock::isHeld(session.copyLock); });
}

ToolResult BackupSandbox::run(const std::vector<std::string>& command) const {
    std::vector<std::string> words{"/bin/sh", "-c", R"(exec "$@" >"$0/out" 2>"$0/err")", root_.path()};
    words.insert(words.end(), command.begin(), command.end());
    ToolResult result;
    result.exitCode = PeerProcess(words).waitForExit(600).value_or(-1);
    result.output = readSmallFile(in("out"), std::size_t{1} << 24);
    result.errors = readSmallFile(in("err"), std::size_t{1} << 24);
    return result;
}

ToolResult BackupSandbox::tmutil(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), NORVANE_LIBEXEC_DIR "/tmutil");
    arguments.insert(arguments.begin(), asUser_.begin(), asUser_.end());
    return run(arguments);
}

std::vector<std::string> BackupSandbox::snapshots() const {
    std::istringstream lines(tmutil({"listbackups"}).output);
    std::vector<std::string> paths;
    for (std::string line; std::getline(lines, line);)
        paths.push_back(line);
    return paths;
}

std::string BackupSandbox::copyOf(const std::string& snapshot, const std::string& path) const {
    return snapshot + path;
}

std::string BackupSandbox::status(const std::string& key) const {
    const std::string text = tmutil({"status"}).output;
    const auto list =
        parseTextPropertyList(std::string_view(text).substr(std::min(text.find('{'), text.size())));
    return list ? stringAt(*list, key) : std::string();
}

PropertyList BackupSandbox::recorded(const std::string& key) const {
    const PropertyList destination = firstDestination(preferences);
    const PropertyList* value = destination.find(key);
    return value ? *value : PropertyList{};
}

bool BackupSandbox::timerIsOn() const { return std::filesystem::exists(in("timer is on")); }

pid_t BackupSandbox::worker() const { return std::atoi(readSmallFile(session.runLock).c_str()); }

void BackupSandbox::becomeOrdinaryUser() {
    if (::geteuid() != 0)
        return;
    (void)run({"chown", "-R", "65534:65534", root_.path()});
    asUser_ = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--"};
}

void BackupSandbox::slowDownRsync(int kilobytesPerSecond) const {
    putProgram("rsync", "exec /usr/bin/rsync --bwlimit=" + std::to_string(kilobytesPerSecond) + " \"$@\"");
}

void BackupSandbox::addSystemctl() const {
    const std::string on = "'" + in("timer is on") + "'";
    putProgram("systemctl", "case $3 in\nenable) : >" + on + ";;\ndisable) rm -f " + on +
                                ";;\nis-active) test -e " + on + " || exit 3;;\nesac");
}

void BackupSandbox::putProgram(const std::string& name, const std::string& script) const {
    std::filesystem::create_directories(in("bin"));
    const std::string path = in("bin/" + name);
    writeFile(path, "#!/bin/sh\n" + script + "\n");
    ::chmod(path.c_str(), 0755);
}

MountedImage::MountedImage(const BackupSandbox& box, const std::string& type, std::string folder,
                           const std::string& options)
    : box_(box), folder_(std::move(folder)) {
    constexpr std::uintmax_t bytes = std::uintmax_t{1} << 30; // of which the image takes what is written
    const std::string image = box.in(folder_.substr(folder_.rfind('/') + 1) + "." + type);
    writeFile(image, "");
    std::filesystem::resize_file(image, bytes);
    if (box.run({"mkfs." + type, image}).exitCode != 0)
        return;
    mounted_ =
        box.run({"mount", "-t", type, "-o", "loop," + options, image, folder_}).exitCode == 0 ||
        box.run({"mount", "-t", type + "-fuse", "-o", "loop," + options, image, folder_}).exitCode == 0;
}

MountedImage::~MountedImage() {
    if (mounted_)
        (void)box_.run({"umount", folder_});
}

void writeFile(const std::string& path, const std::string& content) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

std::uint64_t fingerprint(const std::string& folder) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        paths.push_back(entry.path().string());
    paths.push_back(folder);
    std::sort(paths.begin(), paths.end());
    std::uint64_t hash = 0;
    for (const std::string& path : paths) {
        struct stat status {};
        ::lstat(path.c_str(), &status);
        hashInto(hash, path.substr(folder.size()));
        hashInto(hash, std::to_string(status.st_mode) + " " + std::to_string(status.st_mtim.tv_sec) + " " +
                           std::to_string(status.st_mtim.tv_nsec));
        if (S_ISREG(status.st_mode))
            hashInto(hash, readSmallFile(path, std::size_t{1} << 24));
        if (S_ISLNK(status.st_mode))
            hashInto(hash, std::filesystem::read_symlink(path).string());
    }
    return hash;
}

} // namespace norvane
