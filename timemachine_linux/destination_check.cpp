#include "timemachine_linux/destination_check.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <set>

#include "platform/linux/mount_table.h"
#include "timemachine_linux/backup_place.h"
#include "timemachine_linux/file_system_probe.h"
#include "timemachine_linux/mounted_paths.h"
#include "timemachine_linux/paths.h"

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

std::optional<Mount> mountOf(const std::string& folder) {
    struct statx status {};
    if (::statx(AT_FDCWD, folder.c_str(), 0, STATX_MNT_ID, &status) != 0 || !(status.stx_mask & STATX_MNT_ID))
        return std::nullopt;
    return findMount(mountTableText(), status.stx_mnt_id);
}

/// The disks that hold what is at the path; where no disk is known, its file system stands for them.
std::set<std::string> disksOf(const std::string& path) {
    std::set<std::string> disks;
    struct stat status {};
    const auto mount = mountOf(path);
    if (mount && ::stat(mount->source.c_str(), &status) == 0 && S_ISBLK(status.st_mode)) {
        std::error_code failed;
        const std::string number =
            std::to_string(major(status.st_rdev)) + ":" + std::to_string(minor(status.st_rdev));
        const fs::path device = fs::canonical("/sys/dev/block/" + number, failed);
        if (!failed)
            addDisksBelow(device, disks);
    }
    if (disks.empty() && ::stat(path.c_str(), &status) == 0)
        disks.insert("file system " + std::to_string(status.st_dev));
    return disks;
}

bool haveCommon(const std::set<std::string>& some, const std::set<std::string>& others) {
    return std::any_of(some.begin(), some.end(), [&](const auto& one) { return others.count(one) > 0; });
}

DestinationVerdict refused(DestinationProblem problem, std::string explanation) {
    return {problem, std::move(explanation), {}};
}

bool refusesHardLinks(int error) {
    return error == EPERM || error == ENOSYS || error == EOPNOTSUPP || error == EINVAL || error == EMLINK;
}

DestinationVerdict judgeWriting(const DestinationFacts& facts) {
    const int error = facts.writeError != 0 ? facts.writeError : facts.linkError;
    if (error == EROFS)
        return refused(DestinationProblem::readOnly, facts.path + " is read-only.");
    if (facts.writeError == 0 && refusesHardLinks(error))
        return refused(DestinationProblem::noHardLinks,
                       facts.path + " is on a file system without hard links" +
                           (facts.fileSystem.empty() ? "" : " (" + facts.fileSystem + ")") +
                           ", so each backup would need room for all files. Use one such as ext4, XFS or "
                           "Btrfs.");
    if (error != 0)
        return refused(DestinationProblem::notWritable,
                       "cannot write to " + facts.path + ": " + std::strerror(error));
    return {};
}

bool showsAt(const DestinationFacts& facts, const std::string& path) {
    return facts.path == path ||
           std::find(facts.otherPaths.begin(), facts.otherPaths.end(), path) != facts.otherPaths.end();
}

bool showsWithin(const DestinationFacts& facts, const std::string& folder) {
    return isWithin(facts.path, folder) ||
           std::any_of(facts.otherPaths.begin(), facts.otherPaths.end(),
                       [&](const std::string& path) { return isWithin(path, folder); });
}

std::vector<DestinationVerdict::Remark> remarksOn(const DestinationFacts& facts) {
    std::vector<DestinationVerdict::Remark> remarks;
    for (const std::string& source : facts.sources)
        if (showsWithin(facts, source))
            remarks.push_back({DestinationRemark::insideSource, source,
                               facts.path + " lies inside " + source +
                                   ", which is backed up. It is itself left out of the backups."});
    if (!facts.sourcesOnSameDisk.empty())
        remarks.push_back({DestinationRemark::sameDisk, facts.sourcesOnSameDisk.front(),
                           facts.path + " is on the same disk as " + facts.sourcesOnSameDisk.front() +
                               ". If the disk fails, the files and their backups are lost together."});
    if (!facts.abilities.accessControlLists)
        remarks.push_back({DestinationRemark::noAccessControlLists,
                           {},
                           facts.path + " cannot hold access control lists. Backups will be without them."});
    if (!facts.abilities.extendedAttributes)
        remarks.push_back({DestinationRemark::noExtendedAttributes,
                           {},
                           facts.path + " cannot hold extended attributes. Backups will be without them."});
    return remarks;
}

} // namespace

DestinationFacts examineDestination(const std::string& folder, const std::vector<std::string>& sources) {
    DestinationFacts facts;
    facts.path = folder;
    facts.sources = sources;
    struct stat status {};
    const auto canonical = canonicalPath(folder);
    if (!canonical || ::stat(canonical->c_str(), &status) != 0) {
        facts.accessError = errno;
        return facts;
    }
    facts.path = *canonical;
    facts.isFolder = S_ISDIR(status.st_mode);
    facts.otherPaths = pathsOf(facts.path);
    facts.otherPaths.erase(facts.otherPaths.begin());
    if (!judgeDestination(facts).usable()) // nothing is written where no destination can be
        return facts;
    facts.backup = snapshotHolding(facts.path).value_or("");
    if (!facts.backup.empty())
        return facts;
    const auto mount = mountOf(facts.path);
    facts.fileSystem = mount ? mount->type : "";
    facts.writeError = probeWriting(facts.path);
    if (facts.writeError != 0)
        return facts;
    facts.linkError = probeHardLinks(facts.path);
    facts.abilities = abilitiesOf(facts.path);
    const auto disks = disksOf(facts.path);
    std::copy_if(sources.begin(), sources.end(), std::back_inserter(facts.sourcesOnSameDisk),
                 [&](const std::string& source) { return haveCommon(disks, disksOf(source)); });
    return facts;
}

DestinationVerdict judgeDestination(const DestinationFacts& facts) {
    using Problem = DestinationProblem;
    if (facts.accessError != 0)
        return refused(Problem::missing, facts.path + ": " + std::strerror(facts.accessError));
    if (!facts.isFolder)
        return refused(Problem::notAFolder, facts.path + " is not a folder.");
    if (facts.path == "/")
        return refused(Problem::rootFolder, "The root folder cannot be a backup destination.");
    // Whoever reads the one line in which the path is printed trims it.
    if (!isPrintableUtf8(facts.path) || facts.path.back() == ' ')
        return refused(Problem::strangeName, printable(facts.path) +
                                                 ": the destination's path must be UTF-8 without control "
                                                 "characters and must not end in a space.");
    if (std::any_of(facts.sources.begin(), facts.sources.end(),
                    [&](const std::string& source) { return showsAt(facts, source); }))
        return refused(Problem::isASource,
                       facts.path + " is itself backed up, so it cannot be the destination.");
    if (!facts.backup.empty())
        return refused(Problem::insideBackup,
                       facts.path + " lies in the backup " + facts.backup + ", which must not change.");
    DestinationVerdict verdict = judgeWriting(facts);
    if (verdict.usable())
        verdict.remarks = remarksOn(facts);
    return verdict;
}

} // namespace norvane
