#include "timemachine_linux/destination/destination_check.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include "platform/linux/files/mount_table.h"
#include "platform/text/white_space.h"
#include "timemachine_linux/destination/snapshot_holding.h"
#include "timemachine_linux/files/mounted_paths.h"
#include "timemachine_linux/files/paths.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

// A partition stands in the folder of its disk; what encrypts, joins or divides disks names them as slaves
// (Documentation/ABI/stable/sysfs-block).
void addDisksBelow(const fs::path& device, std::set<std::string>& disks) {
    std::error_code failed;
    bool composed = false;
    for (const auto& slave : fs::directory_iterator(device / "slaves", failed)) {
        addDisksBelow(fs::canonical(slave.path(), failed), disks);
        composed = true;
    }
    if (composed)
        return;
    disks.insert((fs::exists(device / "partition", failed) ? device.parent_path() : device).filename());
}

/// The disks that hold what is at the path; where no disk is known, its file system stands for them.
std::set<std::string> disksOf(const std::string& path, std::string_view mounts) {
    const auto mount = mountHolding(mounts, path);
    struct stat status {};
    dev_t device = 0;
    // Some file systems have device numbers of their own making; their mounts name the real device.
    if (mount && mount->source.starts_with("/dev/") && ::stat(mount->source.c_str(), &status) == 0 &&
        S_ISBLK(status.st_mode))
        device = status.st_rdev;
    else if (mount && mayNeverAnswer(mount->type))
        return {mount->source};
    else if (::stat(path.c_str(), &status) == 0)
        device = status.st_dev;
    else
        return {};
    std::set<std::string> disks;
    std::error_code failed;
    const std::string number = std::to_string(major(device)) + ":" + std::to_string(minor(device));
    if (const fs::path known = fs::canonical("/sys/dev/block/" + number, failed); !failed)
        addDisksBelow(known, disks);
    else
        disks.insert(number);
    return disks;
}

std::vector<std::string> onSameDisk(const std::string& path, const std::vector<std::string>& sources,
                                    std::string_view mounts) {
    const auto disks = disksOf(path, mounts);
    std::vector<std::string> same;
    for (const std::string& source : sources) {
        const auto others = disksOf(source, mounts);
        if (std::any_of(disks.begin(), disks.end(), [&](const auto& disk) { return others.count(disk) > 0; }))
            same.push_back(source);
    }
    return same;
}

/// Of those file systems that are known to have none; what is not known may have them.
bool lacksHardLinks(std::string_view fileSystem) {
    constexpr std::array<std::string_view, 7> types{"vfat",       "msdos",   "umsdos", "exfat",
                                                    "fuse.exfat", "iso9660", "hfs"};
    return std::find(types.begin(), types.end(), fileSystem) != types.end();
}

bool refusesHardLinks(int error) {
    return error == EPERM || error == ENOSYS || error == EOPNOTSUPP || error == EINVAL || error == EMLINK;
}

DestinationProblem problemWithWriting(const DestinationFacts& facts) {
    if (lacksHardLinks(facts.fileSystem) || (facts.writeError == 0 && refusesHardLinks(facts.linkError)))
        return DestinationProblem::noHardLinks;
    if (facts.writeError == EROFS || facts.linkError == EROFS)
        return DestinationProblem::readOnly;
    return facts.writeError == 0 && facts.linkError == 0 ? DestinationProblem::none
                                                         : DestinationProblem::notWritable;
}

template <class Matches>
bool anyPath(const DestinationFacts& facts, Matches matches) {
    return matches(facts.path) || std::any_of(facts.otherPaths.begin(), facts.otherPaths.end(), matches);
}

DestinationProblem problemOf(const DestinationFacts& facts) {
    using enum DestinationProblem;
    const auto& sources = facts.sources;
    const auto isASource = [&](const std::string& path) {
        return std::find(sources.begin(), sources.end(), path) != sources.end();
    };
    if (facts.accessError != 0)
        return missing;
    if (!facts.isFolder)
        return notAFolder;
    if (facts.path == "/")
        return rootFolder;
    // Whoever reads the one line in which the path is printed trims it.
    if (!isPrintableUtf8(facts.path) || trimWhitespace(facts.path) != facts.path)
        return unprintable;
    if (anyPath(facts, isASource))
        return isSource;
    if (!facts.backup.empty())
        return insideBackup;
    return problemWithWriting(facts);
}

void lookUpWriting(DestinationFacts& facts) {
    struct statvfs fileSystem {};
    if (::statvfs(facts.path.c_str(), &fileSystem) == 0 && (fileSystem.f_flag & ST_RDONLY) != 0)
        facts.writeError = EROFS;
    else if (::access(facts.path.c_str(), W_OK | X_OK) != 0)
        facts.writeError = errno;
}

void tryWriting(DestinationFacts& facts) {
    const auto errorOf = [](const std::optional<Failure>& failure) { return failure ? failure->error : 0; };
    facts.writeError = errorOf(probeWriting(facts.path));
    if (facts.writeError != 0)
        return;
    facts.linkError = errorOf(probeHardLinks(facts.path));
    facts.abilities = abilitiesOf(facts.path);
}

/// False: it cannot be reached.
bool reach(DestinationFacts& facts) {
    struct stat status {};
    const auto canonical = canonicalPath(facts.path);
    if (!canonical || ::stat(canonical->c_str(), &status) != 0) {
        facts.accessError = canonical ? errno : canonical.failure().error;
        return false;
    }
    facts.path = *canonical;
    facts.isFolder = S_ISDIR(status.st_mode);
    facts.otherPaths = pathsOf(facts.path);
    facts.otherPaths.erase(facts.otherPaths.begin());
    facts.backup = snapshotHolding(facts.path).value_or("");
    return true;
}

} // namespace

DestinationFacts examineDestination(const std::string& folder, const std::vector<std::string>& sources,
                                    Examination examination) {
    const std::string mounts = mountTableText();
    DestinationFacts facts;
    facts.path = folder;
    facts.sources = sources;
    const auto named = mountHolding(mounts, folder);
    const bool untouched = examination == Examination::byLooking && named && mayNeverAnswer(named->type);
    facts.isFolder = untouched;
    if (!untouched && !reach(facts))
        return facts;
    const auto mount = mountHolding(mounts, facts.path);
    facts.fileSystem = mount ? mount->type : "";
    facts.sourcesOnSameDisk = onSameDisk(facts.path, sources, mounts);
    if (untouched || !judgeDestination(facts).usable()) // nothing is written where no destination can be
        return facts;
    if (examination == Examination::byWriting)
        tryWriting(facts);
    else
        lookUpWriting(facts);
    return facts;
}

DestinationVerdict judgeDestination(const DestinationFacts& facts) {
    DestinationVerdict verdict{problemOf(facts), facts.fileSystem, {}, {}};
    if (verdict.problem == DestinationProblem::isSource)
        return verdict;
    for (const std::string& source : facts.sources)
        if (verdict.insideSource.empty() &&
            anyPath(facts, [&](const std::string& path) { return isWithin(path, source); }))
            verdict.insideSource = source;
    if (!facts.sourcesOnSameDisk.empty())
        verdict.sharesDiskWith = facts.sourcesOnSameDisk.front();
    return verdict;
}

std::string problemLine(const DestinationFacts& facts) {
    switch (judgeDestination(facts).problem) {
    case DestinationProblem::none:
        return {};
    case DestinationProblem::missing:
        return facts.path + ": " + std::strerror(facts.accessError);
    case DestinationProblem::notAFolder:
        return facts.path + " is not a folder.";
    case DestinationProblem::rootFolder:
        return "The root folder cannot be a backup destination.";
    case DestinationProblem::unprintable:
        return printable(facts.path) + ": the destination's path must be UTF-8 without control characters "
                                       "and must not end in a space.";
    case DestinationProblem::isSource:
        return facts.path + " is itself backed up, so it cannot be the destination.";
    case DestinationProblem::insideBackup:
        return facts.path + " lies in the backup " + facts.backup + ", which must not change.";
    case DestinationProblem::readOnly:
        return facts.path + " is read-only.";
    case DestinationProblem::notWritable:
        return "cannot write to " + facts.path + ": " +
               std::strerror(facts.writeError != 0 ? facts.writeError : facts.linkError);
    case DestinationProblem::noHardLinks:
        return facts.path + " is on a file system without hard links" +
               (facts.fileSystem.empty() ? "" : " (" + facts.fileSystem + ")") +
               ", so each backup would need room for all files. Use one such as ext4, XFS or Btrfs.";
    }
    return {};
}

std::vector<std::string> remarkLines(const DestinationFacts& facts) {
    const DestinationVerdict verdict = judgeDestination(facts);
    std::vector<std::string> lines;
    if (!verdict.usable())
        return lines;
    if (!verdict.insideSource.empty())
        lines.push_back(facts.path + " lies inside " + verdict.insideSource +
                        ", which is backed up. It is itself left out of the backups.");
    if (!verdict.sharesDiskWith.empty())
        lines.push_back(facts.path + " is on the same disk as " + verdict.sharesDiskWith +
                        ". If the disk fails, the files and their backups are lost together.");
    if (!facts.abilities.accessControlLists)
        lines.push_back(facts.path + " cannot hold access control lists. Backups will be without them.");
    if (!facts.abilities.extendedAttributes)
        lines.push_back(facts.path + " cannot hold extended attributes. Backups will be without them.");
    return lines;
}

} // namespace norvane
