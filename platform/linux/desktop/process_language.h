// The language of this process.
#pragma once

#include <string>

namespace norvane {

/// Makes Qt, ICU and gettext, and the programs started from here, speak the language ("system", or a tag as
/// "fr-CA"). A system locale of the same language stays, so that its country's dates and times do. To be
/// called before anything else uses a locale, and before any thread starts. A program that starts itself
/// again hands its environment down; the variables are put back first, so that "system" means the system's
/// language there too.
void setProcessLanguage(const std::string& code);

} // namespace norvane
