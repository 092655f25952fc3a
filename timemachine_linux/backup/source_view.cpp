#include "timemachine_linux/backup/source_view.h"

#include <algorithm>
#include <map>

#include "platform/linux/files/file_status.h"
#include "platform/linux/files/mount_table.h"
#include "timemachine_linux/files/btrfs_subvolume.h"

namespace norvane {

namespace {

bool anyWithin(const std::vector<std::string>& paths, const std::string& folder) {
    return std::any_of(paths.begin(), paths.end(), [&](const auto& path) { return isWithin(path, folder); });
}

/// A snapshot of the outer one would show an empty folder in place of the inner one.
bool anyNested(const std::vector<std::string>& sources) {
    return std::any_of(sources.begin(), sources.end(), [&](const std::string& source) {
        return std::count_if(sources.begin(), sources.end(),
                             [&](const auto& other) { return isWithin(other, source); }) > 1;
    });
}

/// A snapshot keeps the inode numbers. Where they differ, the path leads elsewhere than to the volume.
bool showsTheSame(const std::string& original, const std::string& copy) {
    const auto first = fileStatus(original);
    const auto second = fileStatus(copy);
    return first && second && first->st_ino == second->st_ino;
}

} // namespace

SourceView::SourceView(const SourceSelection& selection, const std::vector<std::string>& covered,
                       const std::string& destinationFolder, Instant now, std::vector<std::string>& notes) {
    std::vector<std::string> inPlace;
    std::map<std::string, std::vector<std::string>> byVolume;
    const auto destinationVolume = subvolumeHolding(destinationFolder);
    for (const std::string& source : selection.sources) {
        const auto volume = subvolumeHolding(source);
        if (volume && volume != destinationVolume && !anyWithin(covered, source) &&
            !anyNested(selection.sources))
            byVolume[*volume].push_back(source);
        else
            inPlace.push_back(source);
    }
    for (const auto& [volume, sources] : byVolume)
        takeFrom(volume, sources, now, inPlace, notes);
    if (!inPlace.empty())
        places_.push_back({std::move(inPlace), "/", ""});
}

void SourceView::takeFrom(const std::string& volume, const std::vector<std::string>& sources, Instant now,
                          std::vector<std::string>& inPlace, std::vector<std::string>& notes) {
    const LocalSnapshots snapshots(volume);
    const auto token = snapshots.make(now);
    auto held = token ? snapshots.hold(*token) : std::nullopt;
    // Who may not have snapshots need not hear it every hour.
    if (!held && (token || !isForbidden(token.failure())))
        notes.push_back("Saved files of different moments, without a local snapshot: " +
                        (token ? "it was removed" : token.failure().text));
    SourcePlace place{{}, volume, held ? snapshots.pathOf(*token) : ""};
    for (const std::string& source : sources) {
        const bool inside = held && showsTheSame(source, pathInPlace(place, source));
        (inside ? place.sources : inPlace).push_back(source);
    }
    if (place.sources.empty())
        return;
    held_.push_back({place.snapshot, std::move(*held)});
    places_.push_back(std::move(place));
}

bool SourceView::isWhole() const {
    return std::all_of(held_.begin(), held_.end(), [](const HeldFolder& held) { return held.isInPlace(); });
}

} // namespace norvane
