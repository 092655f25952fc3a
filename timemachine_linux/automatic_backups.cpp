#include "timemachine_linux/automatic_backups.h"

namespace norvane {
namespace {

constexpr auto flagKey = "AutoBackup";

} // namespace

std::optional<bool> automaticBackups(const UserDefaultsFile& preferences) {
    return preferences.object(flagKey) ? std::optional(preferences.boolean(flagKey)) : std::nullopt;
}

std::string setAutomaticBackups(UserDefaultsFile& preferences, const HourlyTimer& timer, bool on) {
    std::string trouble = on ? timer.start() : timer.stop();
    if (!trouble.empty())
        return trouble;
    if (preferences.update([&](PropertyList::Dictionary& all) { all[flagKey] = {on}; }))
        return {};
    if (on)
        (void)timer.stop();
    return "The preferences cannot be written.";
}

} // namespace norvane
