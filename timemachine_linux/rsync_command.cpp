#include "timemachine_linux/rsync_command.h"

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

} // namespace

std::vector<std::string> rsyncArguments(const CopyJob& job) {
    std::vector<std::string> arguments{
        "-aH",
        "--numeric-ids",
        "--one-file-system",
        // Below its own path each source is where a person looks for it, two sources never collide, and the
        // rules of the filter file are plain absolute paths.
        "--relative",
        "--from0",
        "--exclude-from=" + job.filterFile,
        "--info=progress2",
        "--no-inc-recursive",
        "--no-h",
        "--outbuf=L",
    };
    if (job.abilities.accessControlLists)
        arguments.emplace_back("-A");
    if (job.abilities.extendedAttributes)
        arguments.emplace_back("-X");
    // Without this a file changed twice within one second, at the same size, would count as unchanged.
    if (job.abilities.nanoseconds)
        arguments.emplace_back("--modify-window=-1");
    if (job.previousSnapshot)
        arguments.push_back("--link-dest=" + *job.previousSnapshot);
    // What an unfinished run left and the sources no longer have must go, unreadable source folders or not.
    if (job.resuming)
        arguments.insert(arguments.end(), {"--delete", "--delete-excluded", "--ignore-errors"});
    arguments.emplace_back("--");
    arguments.insert(arguments.end(), job.sources.begin(), job.sources.end());
    arguments.push_back(job.target + "/");
    return arguments;
}

std::string filterFileFor(const std::vector<std::string>& excludedPaths) {
    std::string rules;
    for (const std::string& path : excludedPaths) {
        rules += literalPattern(path);
        rules += '\0';
    }
    return rules;
}

} // namespace norvane
