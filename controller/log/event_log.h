// The event log: one line of plain text for everything the program decides.
#pragma once

#include <string>
#include <string_view>

#include "platform/log_file.h"
#include "platform/time/clock.h"

namespace norvane {

/// "2026-03-05 14:07:09 +0000", in UTC, always 25 characters. Years outside 0 to 9999 stop at the nearest
/// end.
[[nodiscard]] std::string logTimestamp(Instant instant);

/// Main thread only.
class EventLog {
public:
    EventLog(const Clock& clock, LogFile& file) : clock_(clock), file_(file) {}

    /// Appends the message, stamped with the current instant. The program never depends on its success.
    void log(std::string_view message) const;

private:
    const Clock& clock_;
    LogFile& file_;
};

} // namespace norvane
