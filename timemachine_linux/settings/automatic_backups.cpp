#include "timemachine_linux/settings/automatic_backups.h"

namespace norvane {

namespace {

constexpr auto flagKey = "AutoBackup";

} // namespace

std::optional<bool> automaticBackups(const UserDefaultsFile& preferences) {
    return preferences.object(flagKey) ? std::optional(preferences.boolean(flagKey)) : std::nullopt;
}

std::optional<Failure> setAutomaticBackups(UserDefaultsFile& preferences, const HourlyTimer& timer, bool on) {
    const std::optional<PropertyList> before = preferences.object(flagKey);
    const bool ran = timer.state() == HourlyTimer::State::active;
    const auto store = [&](const std::optional<PropertyList>& flag) {
        return changePreferences(preferences, [&](PropertyList::Dictionary& all) {
            all.erase(flagKey);
            if (flag)
                all[flagKey] = *flag;
        });
    };
    if (on) {
        if (auto failure = timer.start())
            return failure;
        auto failure = store(PropertyList{true});
        if (failure && !ran)
            (void)timer.stop();
        return failure;
    }
    // In this order: a timer without the flag does nothing, a flag without the timer would be a lie.
    if (auto failure = store(PropertyList{false}))
        return failure;
    auto failure = timer.stop();
    if (failure)
        (void)store(before);
    return failure;
}

} // namespace norvane
