// Time Machine's preferences, as several rooms use them.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/files/user_defaults_file.h"
#include "timemachine_linux/files/failure.h"

namespace norvane {

/// The file of this user.
[[nodiscard]] std::string timeMachinePreferences();

/// All changes that a person asks for, which must hear of it when they cannot be stored.
[[nodiscard]] std::optional<Failure>
changePreferences(UserDefaultsFile& preferences,
                  const std::function<void(PropertyList::Dictionary&)>& change);

/// The first entry of "Destinations", the one in use; an empty text when there is none.
[[nodiscard]] PropertyList firstDestination(const UserDefaultsFile& preferences);

/// The text under the key; empty when there is none.
[[nodiscard]] std::string stringAt(const PropertyList& dictionary, std::string_view key);

} // namespace norvane
