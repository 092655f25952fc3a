// What is mounted where. Format: proc(5), /proc/pid/mountinfo.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norvane {

struct Mount {
    std::uint64_t id = 0;
    std::string root;   ///< The folder of the file system that is mounted.
    std::string folder; ///< Where it is mounted.
    std::string type;   ///< Such as "ext4" or "fuse.sshfs".
    std::string source; ///< Such as "/dev/sda1" or "//nas/share".
};

/// Whether `path` is `folder` or lies below it. Both absolute, without a slash at the end ("/" apart).
[[nodiscard]] bool isWithin(std::string_view path, std::string_view folder);

/// All mounts in the text of a mountinfo file, in its order.
[[nodiscard]] std::vector<Mount> mountTable(std::string_view mountInfo);

/// The mount with this id in the text of a mountinfo file; none when it is not there.
[[nodiscard]] std::optional<Mount> findMount(std::string_view mountInfo, std::uint64_t id);

/// The mount that shows at `path` (absolute, without symbolic links), whether or not there is something; none
/// when the text names no mount above it.
[[nodiscard]] std::optional<Mount> mountHolding(std::string_view mountInfo, std::string_view path);

/// Where anything is mounted, each folder once, in order.
[[nodiscard]] std::vector<std::string> mountFolders(std::string_view mountInfo);

[[nodiscard]] bool isNetworkFileSystem(std::string_view type);

/// Whether another machine or process answers for the file system, or fails to.
[[nodiscard]] bool mayNeverAnswer(std::string_view type);

/// The table of this process' mounts; reading it never waits for one of them.
[[nodiscard]] std::string mountTableText();

/// The address of `path` (absolute, on this mount): "smb://nas/share/folder"; none when the mount names no
/// host.
[[nodiscard]] std::optional<std::string> networkUrl(const Mount& mount, std::string_view path);

} // namespace norvane
