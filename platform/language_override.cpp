#include "platform/language_override.h"

namespace norvane {

namespace {

constexpr auto languagesKey = "AppleLanguages";

} // namespace

std::string languageOverride(const UserDefaults& defaults) {
    const auto stored = defaults.object(languagesKey);
    const auto* const languages = stored ? stored->array() : nullptr;
    const auto* const first = languages && !languages->empty() ? languages->front().string() : nullptr;
    if (!first)
        return systemLanguage;
    if (first->starts_with("fr"))
        return "fr-CA";
    for (const char* const code : {"de", "nl", "es"}) {
        if (first->starts_with(code))
            return code;
    }
    return "en";
}

void setLanguageOverride(UserDefaults& defaults, const std::string& code) {
    if (code == systemLanguage)
        defaults.remove(languagesKey);
    else
        defaults.set(languagesKey, {PropertyList::Array{{code}}});
}

} // namespace norvane
