#include "timemachine_linux/snapshots/backup_history.h"

#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/files/preferences.h"

namespace norvane {

namespace {

// "MessageParameters" are read by people in one line.
constexpr std::size_t mostNotes = 5;
constexpr std::size_t mostAttemptDates = 100; // the newest

PropertyList::Dictionary* entryOf(PropertyList::Dictionary& all, const std::string& id) {
    const auto destinations = all.find("Destinations");
    if (destinations == all.end() || !destinations->second.array())
        return nullptr;
    for (PropertyList& entry : std::get<PropertyList::Array>(destinations->second.value)) {
        if (entry.dictionary() && stringAt(entry, "DestinationID") == id)
            return &std::get<PropertyList::Dictionary>(entry.value);
    }
    return nullptr;
}

PropertyList messagesOf(const AttemptEnd& end) {
    PropertyList::Array messages;
    if (end.failure)
        messages.push_back({printable(end.failure->text)});
    for (std::size_t i = 0; i < end.notes.size() && i < mostNotes; ++i)
        messages.push_back({printable(end.notes[i])});
    if (end.notes.size() > mostNotes)
        messages.push_back({"and " + std::to_string(end.notes.size() - mostNotes) + " more"});
    return {std::move(messages)};
}

} // namespace

DestinationContents contentsOf(const SnapshotStore& store) { return {store.list(), spaceOf(store.folder())}; }

void storeContents(PropertyList::Dictionary& entry, const DestinationContents& contents) {
    PropertyList::Array dates;
    for (const Snapshot& snapshot : contents.snapshots)
        dates.push_back({snapshot.date});
    entry["SnapshotDates"] = {std::move(dates)};
    if (contents.space) {
        entry["BytesAvailable"] = {contents.space->availableBytes};
        entry["BytesUsed"] = {contents.space->usedBytes};
    }
}

bool recordAttemptStart(UserDefaultsFile& preferences, const std::string& destinationId, Instant start) {
    return preferences.update([&](PropertyList::Dictionary& all) {
        PropertyList::Dictionary* entry = entryOf(all, destinationId);
        if (!entry)
            return;
        PropertyList& dates = (*entry)["AttemptDates"];
        if (!dates.array())
            dates = {PropertyList::Array{}};
        auto& list = std::get<PropertyList::Array>(dates.value);
        list.push_back({start});
        if (list.size() > mostAttemptDates)
            list.erase(list.begin(), list.end() - static_cast<std::ptrdiff_t>(mostAttemptDates));
        all["LastDestinationID"] = {destinationId};
    });
}

bool recordAttemptEnd(UserDefaultsFile& preferences, const std::string& destinationId,
                      const AttemptEnd& end) {
    return preferences.update([&](PropertyList::Dictionary& all) {
        PropertyList::Dictionary* entry = entryOf(all, destinationId);
        if (!entry)
            return;
        (*entry)["RESULT"] = {
            static_cast<std::int64_t>(end.failure ? end.failure->code : ResultCode::success)};
        (*entry)["MessageParameters"] = messagesOf(end);
        if (end.contents)
            storeContents(*entry, *end.contents);
    });
}

} // namespace norvane
