#include "platform/linux/desktop/process_language.h"

#include <QLocale>
#include <QString>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <unicode/locid.h>

namespace norvane {

namespace {

TEST(ProcessLanguage, ReachesEveryLibraryAndLeavesNoTrace) {
    UErrorCode error = U_ZERO_ERROR;
    const auto languages = [] {
        return std::string(icu::Locale::getDefault().getName()) + ' ' + QLocale().name().toStdString() + ' ' +
               qgetenv("LANGUAGE").toStdString();
    };
    setenv("LANGUAGE", "pl", 1);
    icu::Locale::setDefault(icu::Locale("de_AT"), error);
    setProcessLanguage("fr-CA");
    EXPECT_EQ(languages(), "fr_CA fr_CA fr_CA");
    icu::Locale::setDefault(icu::Locale("de_AT"), error); // as in a program that this one starts
    setProcessLanguage("de");
    EXPECT_EQ(languages(), "de_AT de_AT de_AT") << "a country's own dates stay";
    setProcessLanguage("system");
    EXPECT_STREQ(std::getenv("LANGUAGE"), "pl");
    EXPECT_EQ(std::getenv("NORVANE_SYSTEM_LANGUAGE"), nullptr);
}

} // namespace

} // namespace norvane
