// Editing the conditions: what the pickers offer, and the list of applications.
#pragma once

#include <array>
#include <string_view>

#include "platform/installed_applications.h"
#include "scheduler_core/conditions_config.h"

namespace norvane {

/// A choice of a picker; its label is English.
template <class Value>
struct Choice {
    std::string_view label;
    Value value;
};

/// Load per processor core.
inline constexpr std::array<Choice<double>, 4> busyChoices = {{
    {"Off", 0},
    {"Only when very busy", 1.0},
    {"When moderately busy", 0.6},
    {"Back up only when nearly idle", 0.3},
}};

/// Percent.
inline constexpr std::array<Choice<std::int64_t>, 4> batteryChoices = {
    {{"Off", 0}, {"20%", 20}, {"30%", 30}, {"50%", 50}}};

/// Minutes.
inline constexpr std::array<Choice<std::int64_t>, 5> recheckChoices = {
    {{"1 minute", 1}, {"2 minutes", 2}, {"5 minutes", 5}, {"10 minutes", 10}, {"15 minutes", 15}}};

/// 0 stands for none.
[[nodiscard]] double busyValue(const ConditionsConfig& config);
void setBusyValue(ConditionsConfig& config, double value);

/// Off stands for none, and so does a stored false.
[[nodiscard]] bool waitsForDisk(const ConditionsConfig& config);
void setWaitsForDisk(ConditionsConfig& config, bool waits);

/// Without an identifier nothing is added, nor what is on the list under the same name.
void addApplication(ConditionsConfig& config, const InstalledApplication& application);
/// Every entry equal to the one at the position.
void removeApplicationAt(ConditionsConfig& config, std::size_t position);

} // namespace norvane
