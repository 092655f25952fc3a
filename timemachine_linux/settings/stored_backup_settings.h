// The backup settings in Time Machine's preferences.
#pragma once

#include "platform/linux/files/user_defaults_file.h"
#include "platform/tool_paths.h"
#include "timemachine_linux/settings/backup_settings.h"
#include "timemachine_linux/settings/hourly_timer.h"
#include "timemachine_linux/sources/source_lists.h"

namespace norvane {

class StoredBackupSettings final : public BackupSettings {
public:
    StoredBackupSettings(const CommandRunner& runner, std::string tmutil, UserPlaces places,
                         HourlyTimer timer);

    [[nodiscard]] BackupSettingsState load() const override;
    [[nodiscard]] std::vector<DestinationOffer> drives() const override;
    [[nodiscard]] DestinationOffer offerOf(const std::string& folder) const override;
    [[nodiscard]] std::optional<Failure> chooseDestination(const std::string& folder) override;
    /// The preferences say so only once the timer does.
    [[nodiscard]] std::optional<Failure> setHourly(bool hourly) override;
    [[nodiscard]] std::optional<Failure> addSource(const std::string& folder) override;
    [[nodiscard]] std::optional<Failure> removeSource(const std::string& folder) override;
    [[nodiscard]] std::optional<Failure> addExclusion(const std::string& path) override;
    [[nodiscard]] std::optional<Failure> removeExclusion(const std::string& path) override;
    [[nodiscard]] std::optional<std::vector<std::string>> foldersIn(const std::string& folder) const override;

private:
    [[nodiscard]] std::optional<BackupDisk> disk() const;
    [[nodiscard]] DestinationFacts examine(const std::string& folder) const;
    [[nodiscard]] BackupFrequency frequency() const;

    const CommandRunner& runner_;
    const std::string tmutil_;
    const UserPlaces places_;
    const HourlyTimer timer_;
    UserDefaultsFile preferences_;
};

} // namespace norvane
