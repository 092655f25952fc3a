#include "timemachine_linux/settings/stored_backup_settings.h"

#include <filesystem>
#include <utility>

#include "platform/linux/files/mount_table.h"
#include "timemachine_linux/destination/backup_drives.h"
#include "timemachine_linux/destination/destination.h"
#include "timemachine_linux/files/file_system_probe.h"
#include "timemachine_linux/files/paths.h"
#include "timemachine_linux/files/preferences.h"
#include "timemachine_linux/settings/automatic_backups.h"
#include "timemachine_linux/snapshots/snapshot_store.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

constexpr double tmutilSeconds = 15;

std::optional<Instant> latestSnapshot(const UserDefaultsFile& preferences) {
    const PropertyList destination = firstDestination(preferences);
    const PropertyList* dates = destination.find("SnapshotDates");
    std::optional<Instant> latest;
    if (dates && dates->array())
        for (const PropertyList& date : *dates->array())
            if (date.date() && (!latest || *date.date() > *latest))
                latest = *date.date();
    return latest;
}

/// Free bytes, where asking for them cannot wait for ever.
std::optional<std::int64_t> availableBytesAt(const std::string& folder) {
    const auto mount = mountHolding(mountTableText(), folder);
    if (mount && mayNeverAnswer(mount->type))
        return std::nullopt;
    const auto space = spaceOf(folder);
    return space ? std::optional(space->availableBytes) : std::nullopt;
}

std::string withoutToolName(std::string complaint) {
    constexpr std::string_view prefix = "tmutil: ";
    if (complaint.starts_with(prefix))
        complaint.erase(0, prefix.size());
    while (complaint.ends_with('\n'))
        complaint.pop_back();
    return complaint;
}

std::optional<Failure> failureOf(const std::optional<CommandResult>& result) {
    if (!result)
        return Failure{"tmutil cannot be started"};
    if (result->exitCode == 0)
        return std::nullopt;
    const std::string complaint = withoutToolName(result->stderr);
    return Failure{complaint.empty() ? "tmutil failed" : complaint};
}

} // namespace

StoredBackupSettings::StoredBackupSettings(const CommandRunner& runner, std::string tmutil, UserPlaces places,
                                           HourlyTimer timer)
    : runner_(runner), tmutil_(std::move(tmutil)), places_(std::move(places)), timer_(std::move(timer)),
      preferences_(timeMachinePreferences()) {}

BackupSettingsState StoredBackupSettings::load() const {
    return {disk(), configuredSources(preferences_, places_), configuredExclusions(preferences_, places_),
            frequency()};
}

std::optional<BackupDisk> StoredBackupSettings::disk() const {
    const auto destination = configuredDestination(preferences_);
    if (!destination)
        return std::nullopt;
    BackupDisk disk;
    disk.name = destination->name;
    disk.folder = destination->path;
    disk.latestBackup = latestSnapshot(preferences_);
    // The tool asks a disk that may be gone, and ends in time whatever the disk does.
    const auto info = runner_.run(tmutil_, {"destinationinfo"}, tmutilSeconds);
    disk.connected = info && info->stdout.find("\nMount Point") != std::string::npos;
    if (!disk.connected)
        return disk;
    disk.availableBytes = availableBytesAt(disk.folder);
    disk.verdict = judgeDestination(examine(disk.folder));
    if (disk.latestBackup)
        disk.backupsFolder = SnapshotStore(disk.folder, hostFolderName()).folder();
    return disk;
}

DestinationFacts StoredBackupSettings::examine(const std::string& folder) const {
    std::vector<std::string> sources;
    for (const std::string& source : configuredSources(preferences_, places_)) {
        const auto mount = mountHolding(mountTableText(), source);
        if (mount && mayNeverAnswer(mount->type))
            sources.push_back(source);
        else if (const auto canonical = canonicalPath(source))
            sources.push_back(*canonical);
    }
    return examineDestination(folder, sources, Examination::byLooking);
}

BackupFrequency StoredBackupSettings::frequency() const {
    const auto automatic = automaticBackups(preferences_);
    if (!automatic)
        return BackupFrequency::unknown;
    if (!*automatic)
        return BackupFrequency::manual;
    return timer_.state() == HourlyTimer::State::inactive ? BackupFrequency::hourlyWithoutTimer
                                                          : BackupFrequency::hourly;
}

std::vector<DestinationOffer> StoredBackupSettings::drives() const {
    std::vector<DestinationOffer> offers;
    for (const Mount& drive : backupDrives(mountTableText(), places_.home))
        offers.push_back(offerOf(drive.folder));
    return offers;
}

DestinationOffer StoredBackupSettings::offerOf(const std::string& folder) const {
    const DestinationFacts facts = examine(folder);
    return {facts.path, isNetworkFileSystem(facts.fileSystem),
            facts.isFolder ? availableBytesAt(facts.path) : std::nullopt, judgeDestination(facts)};
}

std::optional<Failure> StoredBackupSettings::chooseDestination(const std::string& folder) {
    return failureOf(runner_.run(tmutil_, {"setdestination", folder}, tmutilSeconds));
}

std::optional<Failure> StoredBackupSettings::setHourly(bool hourly) {
    return setAutomaticBackups(preferences_, timer_, hourly);
}

std::optional<Failure> StoredBackupSettings::addSource(const std::string& folder) {
    return norvane::addSource(preferences_, folder, places_.home);
}

std::optional<Failure> StoredBackupSettings::removeSource(const std::string& folder) {
    return norvane::removeSource(preferences_, folder, places_.home);
}

std::optional<Failure> StoredBackupSettings::addExclusion(const std::string& path) {
    return norvane::addExclusion(preferences_, path, places_.home);
}

std::optional<Failure> StoredBackupSettings::removeExclusion(const std::string& path) {
    return norvane::removeExclusion(preferences_, path, places_.home);
}

std::optional<std::vector<std::string>> StoredBackupSettings::foldersIn(const std::string& folder) const {
    std::error_code error;
    std::vector<std::string> names;
    fs::directory_iterator entry(folder, fs::directory_options::none, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code ofEntry; // one that cannot be looked at is left out
        const std::string name = entry->path().filename().string();
        if (!name.starts_with('.') && entry->is_directory(ofEntry))
            names.push_back(name);
    }
    return error ? std::nullopt : std::optional(names);
}

} // namespace norvane
