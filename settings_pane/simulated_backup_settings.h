// Backup settings in memory, for tests: set the fields, read the fields.
#pragma once

#include <algorithm>
#include <functional>
#include <map>

#include "timemachine_linux/settings/backup_settings.h"

namespace norvane {

struct SimulatedBackupSettings final : BackupSettings {
    BackupSettingsState state;
    std::vector<DestinationOffer> mounted;
    std::map<std::string, DestinationOffer>
        offers; ///< Of folders; all others are good, and nothing is known.
    std::map<std::string, std::vector<std::string>> folders;
    std::string trouble; ///< Of every change; it changes nothing then.
    std::function<void()> whenLoading = [] {};
    std::function<void()> whenChanging = [] {};
    mutable int loads = 0;

    BackupSettingsState load() const override {
        ++loads;
        whenLoading();
        return state;
    }
    std::vector<DestinationOffer> drives() const override { return mounted; }
    DestinationOffer offerOf(const std::string& folder) const override {
        const auto found = offers.find(folder);
        return found == offers.end() ? DestinationOffer{folder, false, {}, {}} : found->second;
    }
    std::string chooseDestination(const std::string& folder) override {
        return change([&] {
            state.disk = BackupDisk{folder.substr(folder.rfind('/') + 1), folder, "", true, {}, {}, {}};
        });
    }
    std::string setHourly(bool hourly) override {
        return change([&] { state.frequency = hourly ? BackupFrequency::hourly : BackupFrequency::manual; });
    }
    std::string addSource(const std::string& folder) override {
        return change([&] { state.sources.push_back(folder); });
    }
    std::string removeSource(const std::string& folder) override {
        return change([&] { std::erase(state.sources, folder); });
    }
    std::string addExclusion(const std::string& path) override {
        return change([&] { state.exclusions.push_back(path); });
    }
    std::string removeExclusion(const std::string& path) override {
        return change([&] { std::erase(state.exclusions, path); });
    }
    std::optional<std::vector<std::string>> foldersIn(const std::string& folder) const override {
        const auto found = folders.find(folder);
        return found == folders.end() ? std::nullopt : std::optional(found->second);
    }

private:
    template <class Change>
    std::string change(Change change) {
        whenChanging();
        if (trouble.empty())
            change();
        return trouble;
    }
};

} // namespace norvane
