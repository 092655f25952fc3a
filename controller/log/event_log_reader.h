// Reading the event log for people: its newest entries, however long it is.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/time/instant.h"

namespace norvane {

struct LogEntry {
    std::string id;              ///< Unique among the entries shown together.
    std::optional<Instant> date; ///< None: the line carries no time stamp.
    std::string message;         ///< The line behind its time stamp; the whole line when it carries none.

    bool operator==(const LogEntry&) const = default;
};

/// The instant of a stamp as logTimestamp writes it, or of one in another zone, "2026-03-01 09:15:02 +0100".
[[nodiscard]] std::optional<Instant> parseLogTimestamp(std::string_view text);

/// Takes a log in pieces, cut anywhere, and gives the entries that the whole text has. Keeps no more of it
/// than the lines of those entries; of a line that is too long only its beginning counts.
class EventLogReader {
public:
    static constexpr std::size_t maxEntries = 200;
    static constexpr std::size_t maxLineBytes = 1024 * 1024;

    void append(std::string_view bytes);

    /// Newest first, at most maxEntries. Empty when the text so far is not UTF-8.
    [[nodiscard]] std::vector<LogEntry> entries() const;

private:
    bool readable_ = true;
    std::string incomplete_;        // the first bytes of a character whose rest has not come yet
    std::deque<std::string> lines_; // the newest, without empty ones; the last may still grow
    bool lastLineEnded_ = true;
};

} // namespace norvane
