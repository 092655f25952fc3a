// The user's own processes, as /proc shows them (proc(5)).
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace norvane {

/// One process, for as long as it is looked at. Whatever is asked of one that has ended meanwhile is empty.
class OwnProcess {
public:
    /// Tells processes with the same number apart, which the kernel gives away again: those that are not the
    /// same have different ones. One process may change its own when nobody has looked at it for long.
    struct Mark {
        std::uint64_t inode = 0;
        std::int64_t nanoseconds = 0;

        bool operator==(const Mark&) const = default;
    };

    OwnProcess(int procFolder, std::string id, Mark mark)
        : procFolder_(procFolder), id_(std::move(id)), mark_(mark) {}

    [[nodiscard]] const std::string& id() const { return id_; } ///< In decimal digits.
    [[nodiscard]] const Mark& mark() const { return mark_; }

    /// Where a symbolic link of the process' folder points to, such as "exe".
    [[nodiscard]] std::string link(std::string_view name) const;

    /// A file of the process' folder, such as "cgroup"; at most its first 128 KiB.
    [[nodiscard]] std::string file(std::string_view name) const;

    /// A file of the root folder that the process sees, such as ".flatpak-info"; empty where a disk would
    /// have to be asked for it (openat2(2), RESOLVE_CACHED).
    [[nodiscard]] std::string fileInItsRoot(const char* name) const;

    /// Where the process' open files lie, until `visit` returns false. False: there was no descriptor left to
    /// look with.
    bool forEachOpenFile(const std::function<bool(std::string_view path)>& visit) const;

private:
    [[nodiscard]] std::string pathOf(std::string_view name) const;

    const int procFolder_; // descriptor
    const std::string id_;
    const Mark mark_;
};

/// Visits the processes of this user until `visit` returns false. False: the time was over before, or they
/// could not be listed.
bool forEachOwnProcess(const std::string& procFolder, std::chrono::steady_clock::time_point end,
                       const std::function<bool(const OwnProcess& process)>& visit);

} // namespace norvane
