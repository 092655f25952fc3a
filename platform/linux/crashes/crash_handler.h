// Leaving a report when this program crashes.
#pragma once

#include "platform/linux/crashes/crash_report.h"

namespace norvane {

/// From now on a crash of any thread (SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT, an exception that nobody
/// catches) leaves an unfinished report; then the signal takes the effect that it would have had. Once per
/// process. Threads tell an overflow of their stack only with an AlternateSignalStack; the calling one gets
/// it here.
void installCrashHandler(CrashReportSettings settings);

} // namespace norvane
