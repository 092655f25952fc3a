#include "ui/settings/tabs/conditions_edit.h"

#include <algorithm>

namespace norvane {

double busyValue(const ConditionsConfig& config) { return config.maxLoadPerCore.value_or(0); }

void setBusyValue(ConditionsConfig& config, double value) {
    config.maxLoadPerCore = value == 0 ? std::nullopt : std::optional(value);
}

bool waitsForDisk(const ConditionsConfig& config) { return config.requireDestinationPresent.value_or(false); }

void setWaitsForDisk(ConditionsConfig& config, bool waits) {
    config.requireDestinationPresent = waits ? std::optional(true) : std::nullopt;
}

void addApplication(ConditionsConfig& config, const InstalledApplication& application) {
    if (application.id.empty())
        return;
    const BlockedApp added{application.id, application.name.empty() ? application.id : application.name};
    auto& apps = config.blockedApps;
    if (std::find(apps.begin(), apps.end(), added) == apps.end())
        apps.push_back(added);
}

void removeApplicationAt(ConditionsConfig& config, std::size_t position) {
    if (position >= config.blockedApps.size())
        return;
    const BlockedApp removed = config.blockedApps[position];
    std::erase(config.blockedApps, removed);
}

} // namespace norvane
