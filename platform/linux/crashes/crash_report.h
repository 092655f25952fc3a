// The text of a crash report, written while the program crashes.
#pragma once

#include <csignal>
#include <ctime>
#include <string>
#include <string_view>

namespace norvane {

/// Prepared before any crash.
struct CrashReportSettings {
    std::string reportsFolder; ///< Has to exist when the program crashes.
    std::string logFile;       ///< The event log, whose last 20 lines are part of the report.
    std::string homeFolder;    ///< Written as "~" wherever it occurs.
    std::string version;
};

struct Crash {
    int signal = 0;
    const siginfo_t* info = nullptr; ///< Null: unknown.
    const char* exception = "";      ///< Type and message of the exception that nobody caught.
    std::time_t time = 0;
};

/// Stands at the end of a report that could be written whole.
inline constexpr std::string_view endOfCrashReport = "\nEnd of the report.\n";

// Both are async-signal-safe (signal-safety(7)) but for backtrace(3) and dladdr(3), which are when they have
// been called once before.

/// Creates "Norvane-<yyyy-MM-dd-HHmmss, UTC>.crash" for writing by this user alone, named after the next
/// second that has no report yet; -1: not possible. The next start finishes it (finished_crash_reports.h).
[[nodiscard]] int createCrashReport(const CrashReportSettings& settings, std::time_t time);

/// Stack entries are "module + offset name + offset", the name as the linker knows it, as making it
/// readable takes memory; `addr2line -e` takes the first offset. No environment, no arguments, no registers,
/// no memory.
void writeCrashReport(int fd, const CrashReportSettings& settings, const Crash& crash);

} // namespace norvane
