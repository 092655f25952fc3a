#include "timemachine_linux/destination_offer.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "platform/linux/mount_table.h"
#include "timemachine_linux/paths.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;

OfferRefusal refusalOf(const OfferFacts& facts, const std::vector<SourceFacts>& sources) {
    const auto isIt = [&](const SourceFacts& source) { return source.folder == facts.folder; };
    if (!facts.exists)
        return OfferRefusal::missing;
    if (!facts.isFolder)
        return OfferRefusal::notAFolder;
    if (facts.folder == "/")
        return OfferRefusal::rootFolder;
    if (!isPrintableUtf8(facts.folder))
        return OfferRefusal::unprintable;
    if (std::any_of(sources.begin(), sources.end(), isIt))
        return OfferRefusal::isSource;
    if (lacksHardLinks(facts.fileSystem))
        return OfferRefusal::noHardLinks;
    if (facts.readOnly)
        return OfferRefusal::readOnly;
    return facts.writable ? OfferRefusal::none : OfferRefusal::notWritable;
}

std::string numberOf(dev_t device) {
    return std::to_string(::major(device)) + ":" + std::to_string(::minor(device));
}

/// From partitions and layers down to the disk (sysfs: "partition", "slaves").
fs::path lowestDevice(fs::path device) {
    constexpr int mostLayers = 8;
    std::error_code error;
    for (int layer = 0; layer < mostLayers; ++layer) {
        if (fs::exists(device / "partition", error))
            device = device.parent_path();
        const std::vector<fs::path> below(fs::directory_iterator(device / "slaves", error),
                                          fs::directory_iterator());
        if (below.size() != 1)
            break;
        device = fs::canonical(below.front(), error);
    }
    return device;
}

} // namespace

OfferCheck checkOffer(const OfferFacts& facts, const std::vector<SourceFacts>& sources) {
    OfferCheck check{refusalOf(facts, sources), facts.fileSystem, {}, {}};
    for (const SourceFacts& source : sources) {
        if (check.insideSource.empty() && isWithin(facts.folder, source.folder))
            check.insideSource = source.folder;
        if (check.sharesDiskWith.empty() && !facts.disk.empty() && facts.disk == source.disk)
            check.sharesDiskWith = source.folder;
    }
    return check;
}

bool lacksHardLinks(std::string_view fileSystem) {
    constexpr std::array<std::string_view, 7> types{"vfat",       "msdos",   "umsdos", "exfat",
                                                    "fuse.exfat", "iso9660", "hfs"};
    return std::find(types.begin(), types.end(), fileSystem) != types.end();
}

OfferFacts offerFactsOf(const std::string& folder) {
    OfferFacts facts;
    facts.folder = folder;
    if (const auto mount = mountHolding(mountTableText(), folder); mount && mayNeverAnswer(mount->type)) {
        facts.fileSystem = mount->type;
        return facts;
    }
    struct stat status {};
    const auto canonical = canonicalPath(folder);
    facts.exists = canonical && ::stat(canonical->c_str(), &status) == 0;
    if (!facts.exists)
        return facts;
    facts.folder = *canonical;
    facts.isFolder = S_ISDIR(status.st_mode);
    if (const auto mount = mountHolding(mountTableText(), *canonical))
        facts.fileSystem = mount->type;
    struct statvfs fileSystem {};
    facts.readOnly = ::statvfs(canonical->c_str(), &fileSystem) == 0 && (fileSystem.f_flag & ST_RDONLY) != 0;
    facts.writable = ::access(canonical->c_str(), W_OK | X_OK) == 0;
    facts.disk = diskOf(*canonical);
    return facts;
}

std::string diskOf(const std::string& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0)
        return {};
    dev_t device = status.st_dev;
    // Some file systems have device numbers of their own making; their mounts name the real device.
    if (::major(device) == 0) {
        const auto mount = mountHolding(mountTableText(), folder);
        if (mount && mount->source.starts_with("/dev/") && ::stat(mount->source.c_str(), &status) == 0 &&
            S_ISBLK(status.st_mode))
            device = status.st_rdev;
    }
    std::error_code error;
    const fs::path known = fs::canonical("/sys/dev/block/" + numberOf(device), error);
    return error ? numberOf(device) : lowestDevice(known).filename().string();
}

} // namespace norvane
