#include "timemachine_linux/rsync/rsync_command.h"

#include "platform/linux/files/mount_table.h"

namespace norvane {

namespace {

// rsync takes a backslash literally in a pattern without wildcards and as an escape in one that has any.
std::string literalPattern(const std::string& path) {
    if (path.find_first_of("*?[") == std::string::npos)
        return path;
    std::string pattern;
    for (const char c : path) {
        if (c == '*' || c == '?' || c == '[' || c == '\\')
            pattern += '\\';
        pattern += c;
    }
    return pattern;
}

// Below the volume, with a slash at the start; "/" for the volume itself.
std::string belowVolume(const SourcePlace& place, const std::string& path) {
    if (place.volume == "/")
        return path;
    return path.size() == place.volume.size() ? "/" : path.substr(place.volume.size());
}

void addAbilities(std::vector<std::string>& arguments, const FileSystemAbilities& abilities) {
    if (abilities.accessControlLists)
        arguments.emplace_back("-A");
    if (abilities.extendedAttributes)
        arguments.emplace_back("-X");
    // Without this a file changed twice within one second, at the same size, would count as unchanged.
    if (abilities.nanoseconds)
        arguments.emplace_back("--modify-window=-1");
}

} // namespace

std::vector<std::string> rsyncArguments(const CopyJob& job) {
    std::vector<std::string> arguments{
        "-aH",
        "--numeric-ids",
        "--one-file-system",
        // Below its own path each source is where a person looks for it, two sources never collide, and the
        // rules of the filter file are plain paths below the volume.
        "--relative",
        "--from0",
        "--exclude-from=" + job.filterFile,
        "--info=progress2",
        "--no-inc-recursive",
        "--no-h",
        "--outbuf=L",
    };
    addAbilities(arguments, job.abilities);
    if (job.previousSnapshot)
        arguments.push_back("--link-dest=" + volumeBelow(*job.previousSnapshot, job.place));
    // What an unfinished run left and the sources no longer have must go, unreadable source folders or not.
    if (job.resuming)
        arguments.insert(arguments.end(), {"--delete", "--delete-excluded", "--ignore-errors"});
    arguments.emplace_back("--");
    for (const std::string& source : job.place.sources)
        arguments.push_back(
            job.place.snapshot.empty() ? source : job.place.snapshot + "/." + belowVolume(job.place, source));
    arguments.push_back(volumeBelow(job.target, job.place) + "/");
    return arguments;
}

std::vector<std::string> rsyncFolderArguments(const CopyJob& job, const std::vector<std::string>& folders) {
    std::vector<std::string> arguments{"-a", "--no-recursive", "--dirs", "--numeric-ids", "--relative"};
    addAbilities(arguments, job.abilities);
    arguments.emplace_back("--");
    arguments.insert(arguments.end(), folders.begin(), folders.end());
    arguments.push_back(job.target + "/");
    return arguments;
}

std::vector<std::string> rsyncRestoreArguments(const std::vector<std::string>& items,
                                               const std::string& folder,
                                               const FileSystemAbilities& abilities) {
    std::vector<std::string> arguments{"-aH", "--numeric-ids"};
    addAbilities(arguments, abilities);
    arguments.emplace_back("--");
    arguments.insert(arguments.end(), items.begin(), items.end());
    arguments.push_back(folder + "/");
    return arguments;
}

std::string filterFileFor(const SourcePlace& place, const std::vector<std::string>& excludedPaths) {
    std::string rules;
    for (const std::string& path : excludedPaths) {
        if (!isWithin(path, place.volume))
            continue;
        rules += literalPattern(belowVolume(place, path));
        rules += '\0';
    }
    return rules;
}

std::string pathInPlace(const SourcePlace& place, const std::string& path) {
    return place.snapshot.empty() ? path : place.snapshot + belowVolume(place, path);
}

std::string volumeBelow(const std::string& snapshotFolder, const SourcePlace& place) {
    return place.volume == "/" ? snapshotFolder : snapshotFolder + place.volume;
}

std::string withOriginalPaths(std::string text, const SourcePlace& place) {
    if (place.snapshot.empty())
        return text;
    const std::string volume = place.volume == "/" ? "" : place.volume;
    for (std::size_t at = 0; (at = text.find(place.snapshot, at)) != std::string::npos; at += volume.size())
        text.replace(at, place.snapshot.size(), volume);
    return text;
}

} // namespace norvane
