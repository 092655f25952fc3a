// What the user wants backed up and left out, as the preferences keep it.
#pragma once

#include <string>
#include <vector>

#include "timemachine_linux/files/preferences.h"

namespace norvane {

/// The folders of one user that the rules name.
struct UserPlaces {
    std::string home;
    std::string cache;       ///< $XDG_CACHE_HOME, by default ~/.cache.
    std::string stateFolder; ///< This program's own state.
};

/// Of the process's environment.
[[nodiscard]] UserPlaces userPlaces();

/// The folders that the user wants backed up, as they are stored: the home folder when nothing is.
[[nodiscard]] std::vector<std::string> configuredSources(const UserDefaultsFile& preferences,
                                                         const UserPlaces& places);

/// What the user wants left out, as it is stored.
[[nodiscard]] std::vector<std::string> configuredExclusions(const UserDefaultsFile& preferences,
                                                            const UserPlaces& places);

/// Adds the path to, or removes it from, the user's list, whatever another process does to that meanwhile.
/// What is there is not added again.
std::optional<Failure> addSource(UserDefaultsFile& preferences, const std::string& path,
                                 const std::string& home);
std::optional<Failure> removeSource(UserDefaultsFile& preferences, const std::string& path,
                                    const std::string& home);
std::optional<Failure> addExclusion(UserDefaultsFile& preferences, const std::string& path,
                                    const std::string& home);
std::optional<Failure> removeExclusion(UserDefaultsFile& preferences, const std::string& path,
                                       const std::string& home);

} // namespace norvane
