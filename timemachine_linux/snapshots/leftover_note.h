// Whether the files of an unfinished snapshot can be trusted.
#pragma once

#include <optional>
#include <string>

namespace norvane {

/// rsync skips a file that has the right size and time already. After a power cut such a file can be full of
/// zeros, since nothing proved it to be on the disk. So a note kept on this machine, not on the destination,
/// says which unfinished snapshot is sound: one of the present boot, or one that was synced when its run
/// ended.
struct LeftoverNote {
    std::string destinationId;
    std::string name;   ///< Of the unfinished snapshot.
    std::string bootId; ///< The boot during which it was written; empty once it was synced.

    bool operator==(const LeftoverNote&) const = default;
};

[[nodiscard]] std::optional<LeftoverNote> readLeftoverNote(const std::string& path);
bool writeLeftoverNote(const std::string& path, const LeftoverNote& note);

/// Different after each start of the system.
[[nodiscard]] std::string currentBootId();

[[nodiscard]] bool canTrust(const std::optional<LeftoverNote>& note, const std::string& destinationId,
                            const std::string& name, const std::string& bootId);

} // namespace norvane
