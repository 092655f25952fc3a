#include "timemachine_linux/snapshots/leftover_note.h"

#include "platform/linux/files/small_file.h"
#include "platform/text/property_list_xml.h"
#include "timemachine_linux/files/preferences.h"

namespace norvane {

std::optional<LeftoverNote> readLeftoverNote(const std::string& path) {
    const auto stored = parseXmlPropertyList(readSmallFile(path));
    if (!stored)
        return std::nullopt;
    return LeftoverNote{stringAt(*stored, "DestinationID"), stringAt(*stored, "Name"),
                        stringAt(*stored, "BootID")};
}

bool writeLeftoverNote(const std::string& path, const LeftoverNote& note) {
    return replaceFile(
        path,
        writeXmlPropertyList({PropertyList::Dictionary{
            {"BootID", {note.bootId}}, {"DestinationID", {note.destinationId}}, {"Name", {note.name}}}}));
}

std::string currentBootId() {
    std::string id = readSmallFile("/proc/sys/kernel/random/boot_id", 64);
    while (!id.empty() && id.back() == '\n')
        id.pop_back();
    return id.empty() ? "unknown" : id;
}

bool canTrust(const std::optional<LeftoverNote>& note, const std::string& destinationId,
              const std::string& name, const std::string& bootId) {
    return note && note->destinationId == destinationId && note->name == name &&
           (note->bootId.empty() || (note->bootId == bootId && bootId != "unknown"));
}

} // namespace norvane
