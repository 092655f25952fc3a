#include "timemachine_linux/destination/destination.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "platform/linux/files/file_descriptor.h"
#include "platform/linux/files/mount_table.h"
#include "platform/linux/files/small_file.h"
#include "timemachine_linux/files/bounded_call.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/snapshots/backup_history.h"

namespace norvane {
namespace {

constexpr double probeSeconds = 5;

// Version 4 of RFC 9562, upper case as a Mac prints it. Empty: the system has no random numbers.
std::string newUuid() {
    std::array<unsigned char, 16> bytes{};
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        return {};
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0f) | 0x40);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3f) | 0x80);
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::array<char, 3> digits{};
        std::snprintf(digits.data(), digits.size(), "%02X", bytes[i]);
        text += (i == 4 || i == 6 || i == 8 || i == 10) ? "-" : "";
        text += digits.data();
    }
    return text;
}

std::string markerPath(const std::string& folder) { return folder + "/" + destinationMarkerName; }

std::string readMarker(const std::string& folder) {
    std::string text = readSmallFile(markerPath(folder), 64);
    text.erase(std::find_if(text.begin(), text.end(), [](char c) { return c == '\n'; }), text.end());
    return text;
}

// Empty on success.
std::string writeMarker(const std::string& folder, const std::string& id) {
    const std::string path = markerPath(folder);
    const std::string temporary = path + ".new";
    ::unlink(temporary.c_str());
    // Other users of the disk shall see that it is one.
    FileDescriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (file && writeAll(file.get(), id + "\n") && ::fsync(file.get()) == 0 &&
        ::rename(temporary.c_str(), path.c_str()) == 0)
        return {};
    const std::string reason = std::strerror(errno);
    ::unlink(temporary.c_str());
    return "cannot write to " + folder + ": " + reason;
}

std::optional<Mount> mountOf(const std::string& folder) {
    struct statx status {};
    if (::statx(AT_FDCWD, folder.c_str(), 0, STATX_MNT_ID, &status) != 0 || !(status.stx_mask & STATX_MNT_ID))
        return std::nullopt;
    return findMount(mountTableText(), status.stx_mnt_id);
}

std::string stringAt(const PropertyList& dictionary, std::string_view key) {
    const PropertyList* value = dictionary.find(key);
    return value && value->string() ? *value->string() : std::string();
}

const PropertyList* firstDestination(const std::optional<PropertyList>& destinations) {
    return destinations && destinations->array() && !destinations->array()->empty()
               ? &destinations->array()->front()
               : nullptr;
}

} // namespace

std::optional<Destination> configuredDestination(const UserDefaultsFile& preferences) {
    const auto destinations = preferences.object("Destinations");
    const PropertyList* first = firstDestination(destinations);
    if (!first)
        return std::nullopt;
    Destination destination{stringAt(*first, "DestinationID"), stringAt(*first, "NAME"),
                            stringAt(*first, "Kind"), stringAt(*first, "path"), std::nullopt};
    if (destination.id.empty() || !destination.path.starts_with('/'))
        return std::nullopt;
    if (std::string url = stringAt(*first, "NetworkURL"); !url.empty())
        destination.url = std::move(url);
    return destination;
}

std::string setDestination(UserDefaultsFile& preferences, const std::string& folder) {
    std::string id = readMarker(folder);
    constexpr std::size_t uuidLength = 36;
    if (id.size() != uuidLength || !isPrintableUtf8(id)) {
        id = newUuid();
        if (std::string trouble = writeMarker(folder, id); id.empty() || !trouble.empty())
            return trouble;
    }
    const auto mount = mountOf(folder);
    const bool network = mount && isNetworkFileSystem(mount->type);
    const auto url = network ? networkUrl(*mount, folder) : std::nullopt;
    const DestinationContents contents = contentsOf(SnapshotStore(folder, hostFolderName()));
    const bool stored = preferences.update([&](PropertyList::Dictionary& all) {
        PropertyList::Dictionary entry;
        // The same destination again, perhaps elsewhere: its history stays.
        const auto known = all.find("Destinations");
        if (known != all.end() && known->second.array())
            for (const PropertyList& other : *known->second.array())
                if (other.dictionary() && stringAt(other, "DestinationID") == id)
                    entry = *other.dictionary();
        entry["DestinationID"] = {id};
        entry["NAME"] = {folder.substr(folder.rfind('/') + 1)};
        entry["Kind"] = {std::string(network ? "Network" : "Local")};
        entry["path"] = {folder};
        entry.erase("NetworkURL");
        if (url)
            entry["NetworkURL"] = {*url};
        storeContents(entry, contents);
        all["Destinations"] = {PropertyList::Array{{std::move(entry)}}};
    });
    return stored ? "" : "The preferences cannot be written.";
}

bool removeDestination(UserDefaultsFile& preferences) {
    if (!configuredDestination(preferences))
        return false;
    return preferences.update([](PropertyList::Dictionary& all) {
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
