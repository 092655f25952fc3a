#include "timemachine_linux/settings/automatic_backups.h"

namespace norvane {
namespace {

constexpr auto flagKey = "AutoBackup";
constexpr auto unwritable = "The preferences cannot be written.";

} // namespace

std::optional<bool> automaticBackups(const UserDefaultsFile& preferences) {
    return preferences.object(flagKey) ? std::optional(preferences.boolean(flagKey)) : std::nullopt;
}

std::string setAutomaticBackups(UserDefaultsFile& preferences, const HourlyTimer& timer, bool on) {
    const std::optional<PropertyList> before = preferences.object(flagKey);
    const bool ran = timer.state() == HourlyTimer::State::active;
    const auto store = [&](const std::optional<PropertyList>& flag) {
        return preferences.update([&](PropertyList::Dictionary& all) {
            all.erase(flagKey);
            if (flag)
                all[flagKey] = *flag;
        });
    };
    if (on) {
        if (std::string trouble = timer.start(); !trouble.empty())
            return trouble;
        if (store(PropertyList{true}))
            return {};
        if (!ran)
            (void)timer.stop();
        return unwritable;
    }
    // In this order: a timer without the flag does nothing, a flag without the timer would be a lie.
    if (!store(PropertyList{false}))
        return unwritable;
    std::string trouble = timer.stop();
    if (!trouble.empty())
        (void)store(before);
    return trouble;
}

} // namespace norvane
