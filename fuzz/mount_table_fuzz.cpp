#include <algorithm>

#include "fuzz/fuzz.h"
#include "platform/linux/files/mount_table.h"

namespace norvane {

/// The first line is a path, the rest a mount table.
void fuzz(std::string_view input) {
    const std::size_t end = std::min(input.find('\n'), input.size());
    const std::string_view path = input.substr(0, end);
    const std::string_view table = input.substr(std::min(end + 1, input.size()));
    const auto folders = mountFolders(table);
    check(std::is_sorted(folders.begin(), folders.end()), "Folders are in order.");
    check(std::adjacent_find(folders.begin(), folders.end()) == folders.end(), "Each folder comes once.");
    if (const auto mount = mountHolding(table, path)) {
        check(isWithin(path, mount->folder), "The mount of a path is above it.");
        check(std::binary_search(folders.begin(), folders.end(), mount->folder), "It is one of the table's.");
        const auto same = findMount(table, mount->id);
        check(same && same->id == mount->id, "A mount is found by its number.");
    }
}

} // namespace norvane
