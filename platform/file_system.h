// What the program asks of files and volumes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/time/instant.h"

namespace norvane {

struct FolderEntry {
    std::string name;
    std::optional<Instant> created; ///< None: the file system does not tell.

    bool operator==(const FolderEntry&) const = default;
};

/// Read-only queries; any thread.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Whether something exists at the path now. Quick, even where a network mount no longer answers: what
    /// lies on such a mount then counts as existing.
    [[nodiscard]] virtual bool exists(const std::string& path) const = 0;

    /// The folder where the volume that holds the path is mounted now, whether or not there is anything at
    /// the path; none when unknown.
    [[nodiscard]] virtual std::optional<std::string> mountPointOf(const std::string& path) const = 0;

    /// What the user calls the volume that is mounted at the path: its label; the path where it has none.
    [[nodiscard]] virtual std::string displayName(const std::string& path) const = 0;

    /// Free bytes for ordinary users on the volume that holds the home folder; none when unknown.
    [[nodiscard]] virtual std::optional<std::int64_t> homeVolumeAvailableBytes() const = 0;

    /// The direct contents of a folder without its hidden files, in no order; none when it cannot be listed.
    [[nodiscard]] virtual std::optional<std::vector<FolderEntry>> list(const std::string& folder) const = 0;
};

} // namespace norvane
