#include "timemachine_linux/destination/destination.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/files/mount_table.h"
#include "platform/linux/files/small_file.h"
#include "timemachine_linux/files/bounded_call.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/snapshots/backup_history.h"

namespace norvane {

namespace {

constexpr double probeSeconds = 5;

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

// Version 4 of RFC 9562 (random(4)), upper case as a Mac prints it.
std::string newUuid() {
    std::string text = firstLine(readSmallFile("/proc/sys/kernel/random/uuid", 64));
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

std::string markerPath(const std::string& folder) { return folder + "/" + destinationMarkerName; }

std::string readMarker(const std::string& folder) { return firstLine(readSmallFile(markerPath(folder), 64)); }

std::optional<Failure> writeMarker(const std::string& folder, const std::string& id) {
    constexpr mode_t readable = 0644; // other users of the disk shall see that it is one
    if (!id.empty() && replaceFileDurably(markerPath(folder), id + "\n", readable))
        return std::nullopt;
    return systemFailure("cannot write to " + folder);
}

std::optional<Mount> mountOf(const std::string& folder) {
    struct statx status {};
    if (::statx(AT_FDCWD, folder.c_str(), 0, STATX_MNT_ID, &status) != 0 || !(status.stx_mask & STATX_MNT_ID))
        return std::nullopt;
    return findMount(mountTableText(), status.stx_mnt_id);
}

} // namespace

Result<Destination> configuredDestination(const UserDefaultsFile& preferences) {
    const PropertyList first = firstDestination(preferences);
    Destination destination{stringAt(first, "DestinationID"), stringAt(first, "NAME"),
                            stringAt(first, "Kind"), stringAt(first, "path"), std::nullopt};
    if (destination.id.empty() || !destination.path.starts_with('/'))
        return Failure{"No destinations configured."};
    if (std::string url = stringAt(first, "NetworkURL"); !url.empty())
        destination.url = std::move(url);
    return destination;
}

std::optional<Failure> setDestination(UserDefaultsFile& preferences, const std::string& folder) {
    std::string id = readMarker(folder);
    constexpr std::size_t uuidLength = 36;
    if (id.size() != uuidLength || !isPrintableUtf8(id)) {
        id = newUuid();
        if (auto failure = writeMarker(folder, id))
            return failure;
    }
    const auto mount = mountOf(folder);
    const bool network = mount && isNetworkFileSystem(mount->type);
    const auto url = network ? networkUrl(*mount, folder) : std::nullopt;
    const DestinationContents contents = contentsOf(SnapshotStore(folder, hostFolderName()));
    return changePreferences(preferences, [&](PropertyList::Dictionary& all) {
        PropertyList::Dictionary entry;
        // The same destination again, perhaps elsewhere: its history stays.
        const auto known = all.find("Destinations");
        if (known != all.end() && known->second.array())
            for (const PropertyList& other : *known->second.array())
                if (other.dictionary() && stringAt(other, "DestinationID") == id)
                    entry = *other.dictionary();
        entry["DestinationID"] = {id};
        entry["NAME"] = {nameOf(folder)};
        entry["Kind"] = {std::string(network ? "Network" : "Local")};
        entry["path"] = {folder};
        entry.erase("NetworkURL");
        if (url)
            entry["NetworkURL"] = {*url};
        storeContents(entry, contents);
        all["Destinations"] = {PropertyList::Array{{std::move(entry)}}};
    });
}

std::optional<Failure> removeDestination(UserDefaultsFile& preferences) {
    if (const auto destination = configuredDestination(preferences); !destination)
        return destination.failure();
    return changePreferences(preferences, [](PropertyList::Dictionary& all) {
        all.erase("Destinations");
        all.erase("LastDestinationID");
    });
}

bool isAvailable(const Destination& destination) {
    // This much is answered from memory even for a dead mount, so an absent folder costs no process.
    struct statx status {};
    if (::statx(AT_FDCWD, destination.path.c_str(), AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, STATX_TYPE,
                &status) != 0 ||
        !S_ISDIR(status.stx_mode))
        return false;
    const auto marker =
        callBounded(probeSeconds, [&] { return std::optional(readMarker(destination.path)); });
    return marker && *marker == destination.id;
}

} // namespace norvane
