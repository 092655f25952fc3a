#include <algorithm>

#include "controller/log/event_log.h"
#include "controller/log/event_log_reader.h"
#include "fuzz/fuzz.h"
#include "platform/text/utf8.h"

namespace norvane {

namespace {

// A stamp of year 0 or 9999 in another zone may lie outside what is written.
constexpr Instant firstStamp = std::chrono::sys_days{std::chrono::year{0} / 1 / 1};
constexpr Instant lastStamp = std::chrono::sys_days{std::chrono::year{9999} / 12 / 31};

/// The newest lines first, by the simplest means.
std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; isValidUtf8(text) && start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        if (end > start)
            lines.insert(lines.begin(), std::string(text.substr(start, end - start)));
        start = end + 1;
    }
    lines.resize(std::min(lines.size(), EventLogReader::maxEntries));
    return lines;
}

} // namespace

/// The first byte says how long the pieces are that the rest is read in.
void fuzz(std::string_view input) {
    if (input.empty())
        return;
    const std::size_t pieceLength = 1 + static_cast<unsigned char>(input.front());
    const std::string_view text = input.substr(1);
    EventLogReader reader;
    for (std::size_t start = 0; start < text.size(); start += pieceLength)
        reader.append(text.substr(start, pieceLength));
    const auto entries = reader.entries();
    const auto lines = linesOf(text);
    check(entries.size() == lines.size(), "Every line is an entry.");
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const LogEntry& entry = entries[i];
        check(entry.id == std::to_string(i) + "|" + lines[i], "The identity is the place and the line.");
        check(lines[i].ends_with(entry.message), "The message ends the line.");
        check(entry.date || entry.message == lines[i], "Without a stamp the message is the line.");
        const bool writable = entry.date && *entry.date >= firstStamp && *entry.date <= lastStamp;
        check(!writable || parseLogTimestamp(logTimestamp(*entry.date)) == entry.date,
              "A stamp reads back as written.");
    }
}

} // namespace norvane
