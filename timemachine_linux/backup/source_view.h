// Where a backup reads its sources: in local snapshots, so that it saves one moment of each volume, or in
// place.
#pragma once

#include <string>
#include <vector>

#include "platform/instant.h"
#include "timemachine_linux/backup/source_selection.h"
#include "timemachine_linux/files/held_folder.h"
#include "timemachine_linux/local_snapshots/local_snapshots.h"
#include "timemachine_linux/rsync/rsync_command.h"

namespace norvane {

/// Local snapshots are restore points for so long.
inline constexpr double localSnapshotSeconds = 24 * 3600;

/// All when less than a tenth of the volume is free: nothing of the user's shall fail for the room that they
/// take. Adds to the notes what cannot be removed.
void removeLocalSnapshotsForRoom(const LocalSnapshots& snapshots, std::vector<std::string>& notes);
/// Those that are older than that, too. Only after a backup: without one they may be the only copies.
void removeExpiredLocalSnapshots(const LocalSnapshots& snapshots, Instant now,
                                 std::vector<std::string>& notes);

class SourceView {
public:
    /// Makes a snapshot of each volume that holds sources and can have one. A volume that holds the
    /// destination gets none: it would keep the room that old backups make way for. `covered` are folders
    /// below the sources at which something else of the same file system is mounted; a snapshot shows what is
    /// beneath them.
    SourceView(const SourceSelection& selection, const std::vector<std::string>& covered,
               const std::string& destinationFolder, Instant now, std::vector<std::string>& notes);

    /// Each source in exactly one of them.
    [[nodiscard]] const std::vector<SourcePlace>& places() const { return places_; }

    /// False: a snapshot has been removed meanwhile, so what was read may be a part.
    [[nodiscard]] bool isWhole() const;

private:
    void takeFrom(const std::string& volume, const std::vector<std::string>& sources, Instant now,
                  std::vector<std::string>& inPlace, std::vector<std::string>& notes);

    std::vector<SourcePlace> places_;
    std::vector<HeldFolder> held_;
};

} // namespace norvane
