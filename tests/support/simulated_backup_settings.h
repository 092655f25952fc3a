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
    std::optional<Failure> chooseDestination(const std::string& folder) override {
        return change([&] {
            state.disk = BackupDisk{folder.substr(folder.rfind('/') + 1), folder, "", true, {}, {}, {}};
        });
    }
    std::optional<Failure> setHourly(bool hourly) override {
        return change([&] { state.frequency = hourly ? BackupFrequency::hourly : BackupFrequency::manual; });
    }
    std::optional<Failure> addSource(const std::string& folder) override {
        return change([&] { state.sources.push_back(folder); });
    }
    std::optional<Failure> removeSource(const std::string& folder) override {
        return change([&] { std::erase(state.sources, folder); });
    }
    std::optional<Failure> addExclusion(const std::string& path) override {
        return change([&] { state.exclusions.push_back(path); });
    }
    std::optional<Failure> removeExclusion(const std::string& path) override {
        return change([&] { std::erase(state.exclusions, path); });
    }
    std::optional<std::vector<std::string>> foldersIn(const std::string& folder) const override {
        const auto found = folders.find(folder);
        return found == folders.end() ? std::nullopt : std::optional(found->second);
    }

private:
    template <class Change>
    std::optional<Failure> change(Change change) {
        whenChanging();
        if (!trouble.empty())
            return Failure{trouble};
        change();
        return std::nullopt;
    }
};

} // namespace norvane
