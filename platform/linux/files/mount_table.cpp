#include "platform/linux/files/mount_table.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <set>
#include <utility>
#include <vector>

#include "platform/linux/files/small_file.h"
#include "platform/text/escapes.h"

namespace norvane {

namespace {

std::vector<std::string_view> fieldsOf(std::string_view line) {
    std::vector<std::string_view> fields;
    while (!line.empty()) {
        const std::size_t end = std::min(line.find(' '), line.size());
        if (end > 0)
            fields.push_back(line.substr(0, end));
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return fields;
}

// Space, tab, line feed, backslash and number sign stand as three octal digits.
std::string unescaped(std::string_view field) { return withoutEscapes(field, "\\", 3, 8); }

std::string percentEncoded(std::string_view path) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80 &&
            (std::isalnum(byte) != 0 || std::string_view("/-._~@:").find(c) != std::string_view::npos)) {
            text += c;
        } else {
            text += '%';
            text += digits[byte >> 4];
            text += digits[byte & 15];
        }
    }
    return text;
}

} // namespace

bool isWithin(std::string_view path, std::string_view folder) {
    if (folder == "/")
        return true;
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

std::vector<Mount> mountTable(std::string_view mountInfo) {
    std::vector<Mount> mounts;
    while (!mountInfo.empty()) {
        const std::size_t end = std::min(mountInfo.find('\n'), mountInfo.size());
        const auto fields = fieldsOf(mountInfo.substr(0, end));
        mountInfo.remove_prefix(std::min(end + 1, mountInfo.size()));
        const auto separator = std::find(fields.begin(), fields.end(), "-");
        if (fields.size() < 6 || fields.end() - separator < 3)
            continue;
        std::uint64_t number = 0;
        std::from_chars(fields[0].data(), fields[0].data() + fields[0].size(), number);
        mounts.push_back({number, unescaped(fields[3]), unescaped(fields[4]), std::string(separator[1]),
                          unescaped(separator[2])});
    }
    return mounts;
}

std::optional<Mount> findMount(std::string_view mountInfo, std::uint64_t id) {
    for (Mount& mount : mountTable(mountInfo))
        if (mount.id == id)
            return std::move(mount);
    return std::nullopt;
}

std::optional<Mount> mountHolding(std::string_view mountInfo, std::string_view path) {
    std::optional<Mount> holding;
    for (Mount& mount : mountTable(mountInfo))
        if (isWithin(path, mount.folder) && (!holding || mount.folder.size() >= holding->folder.size()))
            holding = std::move(mount);
    return holding;
}

std::vector<std::string> mountFolders(std::string_view mountInfo) {
    std::set<std::string> folders;
    for (Mount& mount : mountTable(mountInfo))
        folders.insert(std::move(mount.folder));
    return {folders.begin(), folders.end()};
}

std::string mountTableText() {
    constexpr std::size_t largestTableBytes = std::size_t{16} << 20;
    return readSmallFile("/proc/self/mountinfo", largestTableBytes);
}

bool isNetworkFileSystem(std::string_view type) {
    constexpr std::array<std::string_view, 14> types{
        "nfs",        "nfs4",        "cifs",  "smb3",        "smbfs",          "9p",       "afs", "ceph",
        "fuse.sshfs", "fuse.rclone", "davfs", "fuse.davfs2", "fuse.curlftpfs", "glusterfs"};
    return std::find(types.begin(), types.end(), type) != types.end() || type == "fuse.glusterfs" ||
           type == "fuse.smbnetfs";
}

bool mayNeverAnswer(std::string_view type) {
    return isNetworkFileSystem(type) || type.starts_with("fuse") || type == "autofs";
}

std::optional<std::string> networkUrl(const Mount& mount, std::string_view path) {
    if (!isNetworkFileSystem(mount.type) || !isWithin(path, mount.folder))
        return std::nullopt;
    std::string below = mount.root == "/" ? "" : mount.root;
    below += mount.folder == "/" ? path : path.substr(mount.folder.size());
    if (mount.source.find("://") != std::string::npos)
        return mount.source + percentEncoded(below);
    if (mount.source.starts_with("//"))
        return "smb:" + percentEncoded(mount.source) + percentEncoded(below);
    // An IPv6 address stands in brackets, which hold colons of their own.
    const std::size_t bracket = mount.source.find(']');
    const std::size_t colon = mount.source.find(':', bracket == std::string::npos ? 0 : bracket);
    if (colon == std::string::npos || colon == 0)
        return std::nullopt;
    const std::string scheme = mount.type.starts_with("nfs") ? "nfs"
                               : mount.type == "fuse.sshfs"  ? "sftp"
                                                             : "";
    if (scheme.empty())
        return std::nullopt;
    std::string remote = mount.source[std::min(colon + 1, mount.source.size() - 1)] == '/' ? "" : "/";
    remote.append(mount.source, colon + 1);
    if (remote == "/" && !below.empty())
        remote.clear();
    return scheme + "://" + mount.source.substr(0, colon) + percentEncoded(remote) + percentEncoded(below);
}

} // namespace norvane
