// Making what a crash left readable, at the next start.
#pragma once

#include <string>
#include <string_view>

namespace norvane {

/// The report with the names on its stack as the source has them. Names that are not the linker's stay.
[[nodiscard]] std::string withReadableStack(std::string_view report);

/// Turns each unfinished report of the folder into a finished one, once: "Norvane-….crash" becomes
/// "Norvane-….ips". One that breaks off says so; one that cannot be rewritten, as on a full disk, is finished
/// as it is.
void finishCrashReports(const std::string& reportsFolder);

} // namespace norvane
