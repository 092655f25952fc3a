#include "platform/language_override.h"

#include <gtest/gtest.h>
#include <utility>

#include "platform/simulated/simulated_user_defaults.h"

namespace norvane {

namespace {

TEST(LanguageOverride, IsReadAndStoredAsTheListOfLanguages) {
    using Array = PropertyList::Array;
    const std::pair<PropertyList, const char*> cases[] = {
        {{Array{{"fr-FR"}}}, "fr-CA"}, {{Array{{"de-AT"}, {"fr"}}}, "de"},  {{Array{{"nl"}}}, "nl"},
        {{Array{{"es-419"}}}, "es"},   {{Array{{"pt-BR"}}}, "en"},          {{Array{{""}}}, "en"},
        {{Array{}}, "system"},         {{Array{{true}, {"de"}}}, "system"}, {{"de"}, "system"},
    };
    SimulatedUserDefaults defaults;
    EXPECT_EQ(languageOverride(defaults), "system");
    for (const auto& [stored, expected] : cases) {
        defaults.set("AppleLanguages", stored);
        EXPECT_EQ(languageOverride(defaults), expected);
    }
    setLanguageOverride(defaults, "de");
    EXPECT_EQ(defaults.object("AppleLanguages"), PropertyList{Array{{"de"}}});
    setLanguageOverride(defaults, "system");
    EXPECT_FALSE(defaults.object("AppleLanguages"));
}

} // namespace

} // namespace norvane
