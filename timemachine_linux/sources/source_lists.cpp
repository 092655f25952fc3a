#include "timemachine_linux/sources/source_lists.h"

#include <algorithm>
#include <cstdlib>

#include "platform/linux/files/user_folders.h"
#include "timemachine_linux/files/paths.h"

namespace norvane {

namespace {

constexpr const char* sourcesKey = "SourceFolders";
constexpr const char* exclusionsKey = "SkipPaths";

std::vector<std::string> storedPaths(const UserDefaultsFile& preferences, const char* key,
                                     const std::string& home) {
    const auto stored = preferences.object(key);
    return stored ? pathsFromPropertyList(*stored, home) : std::vector<std::string>();
}

using Paths = std::vector<std::string>;

/// The array of paths under the key; `initial` where there is none.
PropertyList::Array& pathList(PropertyList::Dictionary& all, const char* key, const Paths& initial) {
    PropertyList& list = all[key];
    if (!list.array()) {
        PropertyList::Array paths;
        std::transform(initial.begin(), initial.end(), std::back_inserter(paths), pathToPropertyList);
        list = {std::move(paths)};
    }
    return std::get<PropertyList::Array>(list.value);
}

bool isOneOf(const PropertyList& entry, const Paths& paths, const std::string& home) {
    const auto parsed = pathsFromPropertyList({PropertyList::Array{entry}}, home);
    return !parsed.empty() && std::find(paths.begin(), paths.end(), parsed.front()) != paths.end();
}

std::optional<Failure> addPath(UserDefaultsFile& preferences, const char* key, const Paths& initial,
                               const std::string& path, const std::string& home) {
    return changePreferences(preferences, [&](PropertyList::Dictionary& all) {
        PropertyList::Array& list = pathList(all, key, initial);
        if (std::none_of(list.begin(), list.end(),
                         [&](const PropertyList& entry) { return isOneOf(entry, {path}, home); }))
            list.push_back(pathToPropertyList(path));
    });
}

std::optional<Failure> removePath(UserDefaultsFile& preferences, const char* key, const Paths& initial,
                                  const std::string& path, const std::string& home) {
    // Entries that people wrote by hand may spell the path in another way. Asked before the lock is taken: a
    // file system may not answer.
    Paths spellings{path};
    for (const std::string& stored : storedPaths(preferences, key, home))
        if (stored != path && resolvedPath(stored).valueOr(stored) == path)
            spellings.push_back(stored);
    return changePreferences(preferences, [&](PropertyList::Dictionary& all) {
        std::erase_if(pathList(all, key, initial),
                      [&](const PropertyList& entry) { return isOneOf(entry, spellings, home); });
    });
}

} // namespace

UserPlaces userPlaces() {
    UserPlaces places;
    places.home = homeFolder();
    const char* cache = std::getenv("XDG_CACHE_HOME"); // NOLINT(concurrency-mt-unsafe): one thread
    places.cache = cache && *cache == '/' ? std::string(cache) : places.home + "/.cache";
    places.stateFolder = libraryFolder() + "/TimeMachine";
    return places;
}

std::vector<std::string> configuredSources(const UserDefaultsFile& preferences, const UserPlaces& places) {
    if (!preferences.object(sourcesKey))
        return {places.home};
    return storedPaths(preferences, sourcesKey, places.home);
}

std::vector<std::string> configuredExclusions(const UserDefaultsFile& preferences, const UserPlaces& places) {
    return storedPaths(preferences, exclusionsKey, places.home);
}

std::optional<Failure> addSource(UserDefaultsFile& preferences, const std::string& path,
                                 const std::string& home) {
    return addPath(preferences, sourcesKey, {home}, path, home);
}

std::optional<Failure> removeSource(UserDefaultsFile& preferences, const std::string& path,
                                    const std::string& home) {
    return removePath(preferences, sourcesKey, {home}, path, home);
}

std::optional<Failure> addExclusion(UserDefaultsFile& preferences, const std::string& path,
                                    const std::string& home) {
    return addPath(preferences, exclusionsKey, {}, path, home);
}

std::optional<Failure> removeExclusion(UserDefaultsFile& preferences, const std::string& path,
                                       const std::string& home) {
    return removePath(preferences, exclusionsKey, {}, path, home);
}

} // namespace norvane
