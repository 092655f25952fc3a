// The tabs of the Settings window.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace norvane {

enum class SettingsTab { general, schedule, blackouts, conditions, activity, about };

struct SettingsTabInfo {
    SettingsTab tab;
    std::string_view rawValue; ///< How others name the tab.
    std::string_view label;    ///< English.
    std::string_view symbol;
};

/// As they stand in the window.
inline constexpr std::array<SettingsTabInfo, 6> settingsTabs = {{
    {SettingsTab::general, "general", "General", "gearshape"},
    {SettingsTab::schedule, "schedule", "Schedule", "calendar.badge.clock"},
    {SettingsTab::blackouts, "blackouts", "Blackouts", "moon.zzz.fill"},
    {SettingsTab::conditions, "conditions", "Conditions", "slider.horizontal.3"},
    {SettingsTab::activity, "activity", "Activity", "list.bullet.rectangle"},
    {SettingsTab::about, "about", "About", "info.circle"},
}};

[[nodiscard]] constexpr std::string_view rawValue(SettingsTab tab) {
    return settingsTabs[static_cast<std::size_t>(tab)].rawValue;
}

/// None unless it is exactly a tab's raw value.
[[nodiscard]] constexpr std::optional<SettingsTab> settingsTabFrom(std::string_view raw) {
    for (const SettingsTabInfo& info : settingsTabs) {
        if (info.rawValue == raw)
            return info.tab;
    }
    return std::nullopt;
}

} // namespace norvane
