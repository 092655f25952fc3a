// The language that the user chose for this program alone.
#pragma once

#include <string>

#include "platform/user_defaults.h"

namespace norvane {

inline constexpr auto systemLanguage = "system"; ///< No choice: the program speaks the system's language.

/// "system", or the one of the program's languages ("en", "fr-CA", "de", "nl", "es") that serves the first
/// entry of the list "AppleLanguages".
[[nodiscard]] std::string languageOverride(const UserDefaults& defaults);

/// Stores the choice, one of the above. It takes effect at the next start.
void setLanguageOverride(UserDefaults& defaults, const std::string& code);

} // namespace norvane
