// Where a backup reads its sources: in local snapshots, so that it saves one moment of each volume, or in
// place.
#pragma once

#include <string>
#include <vector>

#include "platform/time/instant.h"
#include "timemachine_linux/files/held_folder.h"
#include "timemachine_linux/local_snapshots/local_snapshots.h"
#include "timemachine_linux/rsync/rsync_command.h"
#include "timemachine_linux/sources/source_selection.h"

namespace norvane {

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
