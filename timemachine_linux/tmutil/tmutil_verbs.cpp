#include "timemachine_linux/tmutil/tmutil_verbs.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <set>
#include <string>

#include "platform/linux/files/file_status.h"
#include "platform/linux/files/program_search.h"
#include "platform/linux/processes/child_command_runner.h"
#include "platform/linux/processes/linux_tool_paths.h"
#include "platform/linux/time/system_clock.h"
#include "platform/text/property_list_text.h"
#include "timemachine_linux/backup/backup_control.h"
#include "timemachine_linux/destination/destination.h"
#include "timemachine_linux/destination/destination_check.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/files/preferences.h"
#include "timemachine_linux/local_snapshots/local_snapshot_name.h"
#include "timemachine_linux/local_snapshots/local_snapshots.h"
#include "timemachine_linux/restore/restore.h"
#include "timemachine_linux/session/stop_requests.h"
#include "timemachine_linux/settings/automatic_backups.h"
#include "timemachine_linux/snapshots/snapshot_name.h"
#include "timemachine_linux/snapshots/snapshot_store.h"
#include "timemachine_linux/sources/source_selection.h"

namespace norvane {

namespace {

using Arguments = std::vector<std::string>;

struct Context {
    UserDefaultsFile preferences{timeMachinePreferences()};
    UserPlaces places = userPlaces();
};

void print(const std::string& text) { std::fwrite(text.data(), 1, text.size(), stdout); }

int fail(const std::string& text) {
    const std::string line = "tmutil: " + text + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    return exitFailure;
}

int exitStatus(const std::optional<Failure>& failure) { return failure ? fail(failure->text) : exitSuccess; }

std::string destinationFolder(const Context& context) {
    const auto destination = configuredDestination(context.preferences);
    return destination ? destination->path : std::string();
}

int setDestinationVerb(Context& context, const Arguments& arguments) {
    const DestinationFacts facts =
        examineDestination(arguments.front(), selectSources(context.preferences, context.places, "").sources,
                           Examination::byWriting);
    if (const std::string problem = problemLine(facts); !problem.empty())
        return fail(problem);
    if (const auto failure = setDestination(context.preferences, facts.path))
        return fail(failure->text);
    for (const std::string& remark : remarkLines(facts))
        print("Note: " + remark + "\n");
    return exitSuccess;
}

int removeDestinationVerb(Context& context, const Arguments&) {
    return exitStatus(removeDestination(context.preferences));
}

/// Who reads a URL here takes the destination for reachable only while a file server of these two kinds
/// answers at its host, so the address of any other would keep it from ever being backed up to.
bool isFileServerUrl(std::string_view url) { return url.starts_with("smb://") || url.starts_with("afp://"); }

int destinationInfo(Context& context, const Arguments&) {
    const auto destination = configuredDestination(context.preferences);
    if (!destination)
        return fail(destination.failure().text);
    print("> ==================================================\n");
    print("Name          : " + destination->name + "\n");
    print("Kind          : " + destination->kind + "\n");
    if (isAvailable(*destination))
        print("Mount Point   : " + destination->path + "\n");
    if (destination->url && isFileServerUrl(*destination->url))
        print("URL           : " + *destination->url + "\n");
    print("ID            : " + destination->id + "\n");
    return exitSuccess;
}

int setAutoBackup(Context& context, bool on) {
    const ChildCommandRunner runner;
    const HourlyTimer timer(runner, hourlyTimerPlaces(programFolder() + "/tmutil"));
    return exitStatus(setAutomaticBackups(context.preferences, timer, on));
}

int enable(Context& context, const Arguments&) { return setAutoBackup(context, true); }
int disable(Context& context, const Arguments&) { return setAutoBackup(context, false); }

int startBackupVerb(Context& context, const Arguments& arguments) {
    bool wait = false;
    bool byItself = false;
    for (const std::string& option : arguments) {
        if (option == "--block" || option == "-b") {
            wait = true;
        } else if (option == "--auto" || option == "-a") {
            byItself = true;
        } else {
            fail("startbackup: unknown option " + option);
            return exitUsage;
        }
    }
    if (byItself && !automaticBackups(context.preferences).value_or(false))
        return exitSuccess;
    const SystemClock clock;
    const StartOutcome outcome = startBackup(clock, context.preferences, context.places, wait);
    if (outcome.alreadyRunning)
        print("A backup is already running.\n");
    if (!outcome.failure)
        return exitSuccess;
    return fail(outcome.failure->text.empty() ? "The backup failed." : outcome.failure->text);
}

int stopBackupVerb(Context& context, const Arguments&) {
    return stopBackup(SessionFiles(context.places.stateFolder))
               ? exitSuccess
               : fail("The backup could not be asked to stop.");
}

int status(Context& context, const Arguments&) {
    const PropertyList state = currentStatus(SessionFiles(context.places.stateFolder));
    print("Backup session status:\n" + writeTextPropertyList(state) + "\n");
    return exitSuccess;
}

/// Paths of the snapshots, oldest first; a complaint instead when there are none.
int printSnapshots(const Context& context, bool latestOnly) {
    const auto destination = configuredDestination(context.preferences);
    if (!destination)
        return fail(destination.failure().text);
    if (!isAvailable(*destination))
        return fail(destination->path + " is not available.");
    const SnapshotStore store(destination->path, hostFolderName());
    std::vector<Snapshot> snapshots = store.list();
    if (snapshots.empty())
        return fail("No backups found for this machine.");
    if (latestOnly)
        snapshots.erase(snapshots.begin(), snapshots.end() - 1);
    for (const Snapshot& snapshot : snapshots)
        print(store.pathOf(snapshot.name) + "\n");
    return exitSuccess;
}

int latestBackup(Context& context, const Arguments&) { return printSnapshots(context, true); }
int listBackups(Context& context, const Arguments&) { return printSnapshots(context, false); }

/// Runs `action` with each path resolved; complains about those that do not exist and goes on.
template <class Action>
int forEachPath(const Arguments& arguments, Action action) {
    int result = exitSuccess;
    for (const std::string& argument : arguments) {
        const auto path = resolvedPath(argument);
        if (!path)
            result = fail(argument + ": No such file or directory");
        else if (const std::optional<Failure> failure = action(*path))
            result = fail(std::string(argument).append(": ").append(failure->text));
    }
    return result;
}

int addExclusionVerb(Context& context, const Arguments& arguments) {
    return forEachPath(arguments, [&](const std::string& path) {
        return fileStatus(path) ? addExclusion(context.preferences, path, context.places.home)
                                : Failure{"No such file or directory"};
    });
}

int removeExclusionVerb(Context& context, const Arguments& arguments) {
    return forEachPath(arguments, [&](const std::string& path) {
        return removeExclusion(context.preferences, path, context.places.home);
    });
}

int isExcluded(Context& context, const Arguments& arguments) {
    const SourceSelection selection =
        selectSources(context.preferences, context.places, destinationFolder(context));
    return forEachPath(arguments, [&](const std::string& path) {
        print(isLeftOut(selection, path) ? "[Excluded]    " : "[Included]    ");
        print(path + "\n");
        return std::nullopt;
    });
}

/// The volumes with local snapshots that an argument stands for. "/" is a Mac's one volume with the user's
/// files: here all those that hold sources.
Result<std::vector<std::string>> localVolumes(const Context& context, const std::string& argument) {
    if (argument == "/")
        return volumesHolding(
            selectSources(context.preferences, context.places, destinationFolder(context)).sources);
    const auto path = canonicalPath(argument);
    if (!path)
        return Failure{argument + ": " + path.failure().text};
    return volumesHolding({*path});
}

int localSnapshot(Context& context, const Arguments&) {
    const SystemClock clock;
    const auto volumes = localVolumes(context, "/");
    if (volumes->empty())
        return fail("The folders to back up are on file systems without snapshots. Btrfs has them.");
    int result = exitSuccess;
    const Instant now = clock.now();
    for (const std::string& volume : *volumes) {
        if (const auto token = LocalSnapshots(volume).make(now))
            print("Created local snapshot with date: " + *token + "\n");
        else
            result = fail(token.failure().text);
    }
    return result;
}

int listLocalSnapshots(Context& context, const Arguments& arguments) {
    const auto volumes = localVolumes(context, arguments.front());
    if (!volumes)
        return fail(volumes.failure().text);
    print("Snapshots for disk " + printable(arguments.front()) + ":\n");
    std::set<std::string> tokens;
    for (const std::string& volume : *volumes)
        for (const LocalSnapshot& snapshot : LocalSnapshots(volume).list())
            tokens.insert(snapshot.token);
    for (const std::string& token : tokens)
        print(localSnapshotName(token) + "\n");
    return exitSuccess;
}

/// Removes those with the date, or all.
int deleteLocalSnapshotsOf(const std::vector<std::string>& volumes, const std::optional<std::string>& date) {
    int result = exitSuccess;
    std::size_t found = 0;
    for (const std::string& volume : volumes)
        for (const LocalSnapshot& snapshot : LocalSnapshots(volume).list()) {
            if (date && snapshot.token != *date)
                continue;
            ++found;
            if (const auto failure = LocalSnapshots(volume).remove(snapshot.token))
                result = fail(failure->text);
            else
                print("Deleted local snapshot '" + snapshot.token + "'\n");
        }
    return date && found == 0 ? fail("There is no local snapshot with the date " + *date + ".") : result;
}

int deleteLocalSnapshots(Context& context, const Arguments& arguments) {
    const std::string& argument = arguments.front();
    if (parseSnapshotName(argument))
        return deleteLocalSnapshotsOf(*localVolumes(context, "/"), argument);
    const auto volumes = localVolumes(context, argument);
    if (!volumes)
        return fail(volumes.failure().text);
    // All of a volume goes only when the volume itself is named, not some folder in it.
    if (argument != "/" && *volumes != std::vector{*canonicalPath(argument)})
        return fail(argument + " is neither a date nor a volume with local snapshots.");
    return deleteLocalSnapshotsOf(*volumes, std::nullopt);
}

int restoreVerb(Context&, const Arguments& arguments) {
    const bool verbose = arguments.front() == "-v";
    Arguments paths(arguments.begin() + (verbose ? 1 : 0), arguments.end());
    if (paths.size() < 2)
        return fail("restore: name what to restore, and where to");
    const std::string destination = paths.back();
    paths.pop_back();
    const auto rsync = findProgram("rsync");
    if (!rsync)
        return fail("rsync is not installed");
    const auto plan = planRestore(paths, destination);
    if (!plan)
        return fail(plan.failure().text);
    StopRequests stop;
    const RestoreOutcome outcome = restore(*plan, *rsync, stop);
    for (const std::string& note : outcome.notes)
        fail(printable(note));
    if (outcome.failure)
        return fail(outcome.failure->text);
    for (const RestoreItem& item : plan->items)
        if (verbose)
            print(item.source + " -> " + item.target + "\n");
    return exitSuccess;
}

int help(Context&, const Arguments&) {
    print(usageText());
    return exitSuccess;
}

struct Verb {
    std::string_view name;
    std::string_view arguments;
    std::size_t fewest;
    std::size_t most;
    int (*run)(Context&, const Arguments&);
};

constexpr std::size_t anyNumber = SIZE_MAX;

constexpr std::array verbs{
    Verb{"setdestination", "folder", 1, 1, setDestinationVerb},
    Verb{"removedestination", "", 0, 0, removeDestinationVerb},
    Verb{"destinationinfo", "", 0, 0, destinationInfo},
    Verb{"enable", "", 0, 0, enable},
    Verb{"disable", "", 0, 0, disable},
    Verb{"startbackup", "[--auto] [--block]", 0, 2, startBackupVerb},
    Verb{"stopbackup", "", 0, 0, stopBackupVerb},
    Verb{"status", "", 0, 0, status},
    Verb{"latestbackup", "", 0, 0, latestBackup},
    Verb{"listbackups", "", 0, 0, listBackups},
    Verb{"addexclusion", "path ...", 1, anyNumber, addExclusionVerb},
    Verb{"removeexclusion", "path ...", 1, anyNumber, removeExclusionVerb},
    Verb{"isexcluded", "path ...", 1, anyNumber, isExcluded},
    Verb{"localsnapshot", "", 0, 0, localSnapshot},
    Verb{"listlocalsnapshots", "mount_point", 1, 1, listLocalSnapshots},
    Verb{"deletelocalsnapshots", "mount_point | date", 1, 1, deleteLocalSnapshots},
    Verb{"restore", "[-v] src ... dst", 2, anyNumber, restoreVerb},
    Verb{"help", "", 0, 0, help},
};

} // namespace

std::string usageText() {
    std::string text = "Usage:\n";
    for (const Verb& verb : verbs) {
        text.append("    tmutil ").append(verb.name);
        if (!verb.arguments.empty())
            text.append(1, ' ').append(verb.arguments);
        text += '\n';
    }
    text += "\nThe mount point / stands for all volumes that hold folders to back up.\n"
            "startbackup --auto does nothing unless automatic backups are enabled.\n"
            "restore puts each src into the folder dst, or gives the one src the name dst. It overwrites "
            "nothing.\n";
    return text;
}

int runVerb(std::string_view name, const Arguments& arguments) {
    const auto verb =
        std::find_if(verbs.begin(), verbs.end(), [&](const Verb& one) { return one.name == name; });
    if (verb == verbs.end()) {
        fail("unknown verb: " + std::string(name) + "\n" + usageText());
        return exitUsage;
    }
    if (arguments.size() < verb->fewest || arguments.size() > verb->most) {
        fail("usage: tmutil " + std::string(verb->name) + " " + std::string(verb->arguments));
        return exitUsage;
    }
    Context context;
    return verb->run(context, arguments);
}

} // namespace norvane
