// The snapshots of one machine on a destination: <destination>/<host>/<yyyy-MM-dd-HHmmss>, each a browsable
// folder that holds every source below its own full path.
#pragma once

#include <string>
#include <vector>

#include "platform/time/instant.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

struct Snapshot {
    std::string name;
    Instant date;

    bool operator==(const Snapshot&) const = default;
};

class SnapshotStore {
public:
    SnapshotStore(const std::string& destinationFolder, const std::string& hostName);

    [[nodiscard]] const std::string& folder() const { return folder_; }
    [[nodiscard]] std::string pathOf(const std::string& name) const { return folder_ + "/" + name; }

    /// Whoever changes anything in the folder holds a lock on this file: other users and other machines of
    /// the same name may have the same destination.
    [[nodiscard]] std::string lockFile() const { return folder_ + "/.lock"; }

    /// Complete snapshots only, oldest first; by name where two have one date.
    [[nodiscard]] std::vector<Snapshot> list() const;

    /// Names of unfinished snapshots, oldest first.
    [[nodiscard]] std::vector<std::string> unfinished() const;

    /// Gives the finished copy its final name: that of `now`, or of the next free second. What is in it must
    /// be on the disk already; the new name is when this returns.
    [[nodiscard]] Result<Snapshot> publish(const std::string& unfinishedName, Instant now) const;

    /// Takes the name from a snapshot: it is unfinished from now on, whatever happens to what is in it. That
    /// is on the disk when this returns. Gives the new name.
    [[nodiscard]] Result<std::string> withdraw(const Snapshot& snapshot) const;

private:
    std::string folder_;
};

/// This machine's name, fit to be a folder's name.
[[nodiscard]] std::string hostFolderName();

} // namespace norvane
