// What a person sets about Time Machine: where backups go, what is in them, and how often they are made.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/time/instant.h"
#include "timemachine_linux/destination/destination_check.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

enum class BackupFrequency {
    unknown, ///< Nobody has set it.
    manual,
    hourly,
    hourlyWithoutTimer, ///< Set to hourly, and nothing is there to start the backups.
};

/// The configured destination.
struct BackupDisk {
    std::string name;
    std::string folder;
    std::string backupsFolder; ///< Of this machine; empty: there is none now.
    bool connected = false;
    std::optional<std::int64_t> availableBytes; ///< None: unknown.
    std::optional<Instant> latestBackup;
    DestinationVerdict verdict; ///< While it is connected.

    bool operator==(const BackupDisk&) const = default;
};

struct BackupSettingsState {
    std::optional<BackupDisk> disk;
    std::vector<std::string> sources;    ///< Paths, as plain bytes, in the user's order.
    std::vector<std::string> exclusions; ///< The user's own.
    BackupFrequency frequency = BackupFrequency::unknown;

    bool operator==(const BackupSettingsState&) const = default;
};

/// A drive, or a folder that the user chose, as a destination to be.
struct DestinationOffer {
    std::string folder;
    bool network = false;
    std::optional<std::int64_t> availableBytes; ///< None: unknown.
    DestinationVerdict verdict;

    bool operator==(const DestinationOffer&) const = default;
};

/// Every call may take seconds: background threads only, any number at once.
class BackupSettings {
public:
    virtual ~BackupSettings() = default;

    [[nodiscard]] virtual BackupSettingsState load() const = 0;

    [[nodiscard]] virtual std::vector<DestinationOffer> drives() const = 0;
    [[nodiscard]] virtual DestinationOffer offerOf(const std::string& folder) const = 0;
    [[nodiscard]] virtual std::optional<Failure> chooseDestination(const std::string& folder) = 0;

    [[nodiscard]] virtual std::optional<Failure> setHourly(bool hourly) = 0;

    /// Neither adds what is there already.
    [[nodiscard]] virtual std::optional<Failure> addSource(const std::string& folder) = 0;
    [[nodiscard]] virtual std::optional<Failure> removeSource(const std::string& folder) = 0;
    [[nodiscard]] virtual std::optional<Failure> addExclusion(const std::string& path) = 0;
    [[nodiscard]] virtual std::optional<Failure> removeExclusion(const std::string& path) = 0;

    /// Names of the folders in the folder, hidden ones left out, in no order; none when it cannot be listed.
    [[nodiscard]] virtual std::optional<std::vector<std::string>>
    foldersIn(const std::string& folder) const = 0;
};

} // namespace norvane
