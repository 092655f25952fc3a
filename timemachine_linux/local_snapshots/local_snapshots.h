// The local snapshots of one volume: <volume>/.norvane-snapshots/com.apple.TimeMachine.<date>.local,
// read-only Btrfs snapshots of the volume, which shares its blocks with them. A volume is named by the
// top folder of its subvolume.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/files/file_descriptor.h"
#include "platform/time/instant.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

struct LocalSnapshot {
    std::string token; ///< The date in its name: "2024-05-01-101500".
    Instant created;   ///< As the file system remembers it.

    bool operator==(const LocalSnapshot&) const = default;
};

class LocalSnapshots {
public:
    /// A folder of the volume's top that belongs to somebody else, or is a symbolic link or a mount, is left
    /// alone: then there are no snapshots, and none can be made.
    explicit LocalSnapshots(std::string volume);

    [[nodiscard]] const std::string& volume() const { return volume_; }
    [[nodiscard]] std::string folder() const;
    [[nodiscard]] std::string pathOf(const std::string& token) const;

    /// Oldest first. Of what is in the folder, only snapshots of this very volume count.
    [[nodiscard]] std::vector<LocalSnapshot> list() const;

    /// Named by `now`, or the next second that is free; gives the token. Makes none that this user could not
    /// remove again.
    [[nodiscard]] Result<std::string> make(Instant now) const;

    [[nodiscard]] std::optional<Failure> remove(const std::string& token) const;

    /// This program removes no snapshot while such a descriptor is open, here or in a child. None: it is not
    /// there.
    [[nodiscard]] std::optional<FileDescriptor> hold(const std::string& token) const;

private:
    std::string volume_;
};

/// Whether this user may not have a snapshot, now or later.
[[nodiscard]] bool isForbidden(const Failure& failure);

/// The volumes that hold the paths, each once, in order; paths elsewhere have none.
[[nodiscard]] std::vector<std::string> volumesHolding(const std::vector<std::string>& paths);

} // namespace norvane
