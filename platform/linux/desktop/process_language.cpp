#include "platform/linux/desktop/process_language.h"

#include <QLocale>
#include <QString>
#include <cstring>
#include <unicode/locid.h>

#include "platform/language_override.h"

namespace norvane {

namespace {

constexpr auto languageVariable = "LANGUAGE";                 // gettext's list of languages
constexpr auto inheritedVariable = "NORVANE_SYSTEM_LANGUAGE"; // what it was before this program changed it

void restoreEnvironment() {
    if (!qEnvironmentVariableIsSet(inheritedVariable))
        return;
    if (const QByteArray inherited = qgetenv(inheritedVariable); inherited.isEmpty())
        qunsetenv(languageVariable);
    else
        qputenv(languageVariable, inherited);
    qunsetenv(inheritedVariable);
}

} // namespace

void setProcessLanguage(const std::string& code) {
    restoreEnvironment();
    if (code == systemLanguage)
        return;
    UErrorCode error = U_ZERO_ERROR;
    icu::Locale locale = icu::Locale::forLanguageTag(code, error);
    const icu::Locale& system = icu::Locale::getDefault();
    const bool sameLanguage = std::strcmp(system.getLanguage(), locale.getLanguage()) == 0;
    if (sameLanguage && *locale.getCountry() == '\0')
        locale = system;
    icu::Locale::setDefault(locale, error);
    QLocale::setDefault(QLocale(QString::fromLatin1(locale.getBaseName())));
    qputenv(inheritedVariable, qgetenv(languageVariable));
    qputenv(languageVariable, locale.getBaseName());
}

} // namespace norvane
