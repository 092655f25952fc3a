#include "timemachine_linux/files/preferences.h"

#include "platform/linux/files/user_folders.h"

namespace norvane {

std::string timeMachinePreferences() { return preferencesFile("com.apple.TimeMachine"); }

std::optional<Failure> changePreferences(UserDefaultsFile& preferences,
                                         const std::function<void(PropertyList::Dictionary&)>& change) {
    if (preferences.update(change))
        return std::nullopt;
    return Failure{"The preferences cannot be written."};
}

PropertyList firstDestination(const UserDefaultsFile& preferences) {
    const auto destinations = preferences.object("Destinations");
    if (!destinations || !destinations->array() || destinations->array()->empty())
        return {};
    return destinations->array()->front();
}

std::string stringAt(const PropertyList& dictionary, std::string_view key) {
    const PropertyList* value = dictionary.find(key);
    return value && value->string() ? *value->string() : std::string();
}

} // namespace norvane
