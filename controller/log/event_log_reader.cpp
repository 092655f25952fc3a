#include "controller/log/event_log_reader.h"

#include <algorithm>
#include <chrono>
#include <unicode/utf8.h> // macros only: nothing of ICU is linked
#include <utility>

#include "platform/text/digit_pattern.h"
#include "platform/text/utf8.h"

namespace norvane {

namespace {

constexpr std::size_t stampLength = 25;

/// The number of bytes at the end that begin a character and do not end it.
std::size_t incompleteBytes(std::string_view text) {
    for (std::size_t count = 1; count <= std::min<std::size_t>(text.size(), U8_MAX_LENGTH - 1); ++count) {
        const auto byte = static_cast<unsigned char>(text[text.size() - count]);
        if (U8_IS_LEAD(byte))
            return static_cast<std::size_t>(U8_COUNT_TRAIL_BYTES(byte)) >= count ? count : 0;
        if (!U8_IS_TRAIL(byte))
            return 0;
    }
    return 0;
}

/// Up to the longest line, and to the end of the character there.
void addToLine(std::string& line, std::string_view piece) {
    std::size_t length = std::min(piece.size(), EventLogReader::maxLineBytes -
                                                    std::min(line.size(), EventLogReader::maxLineBytes));
    while (length < piece.size() && U8_IS_TRAIL(static_cast<unsigned char>(piece[length])))
        ++length;
    line += piece.substr(0, length);
}

LogEntry entryFrom(const std::string& line, std::size_t position) {
    LogEntry entry{std::to_string(position) + '|' + line, std::nullopt, line};
    // A stamp, one character behind it whatever it is, and a message.
    if (line.size() <= stampLength)
        return entry;
    std::size_t messageStart = stampLength;
    (void)nextCodePoint(line, messageStart);
    if (messageStart >= line.size())
        return entry;
    entry.date = parseLogTimestamp(std::string_view(line).substr(0, stampLength));
    if (entry.date)
        entry.message = line.substr(messageStart);
    return entry;
}

} // namespace

std::optional<Instant> parseLogTimestamp(std::string_view text) {
    using namespace std::chrono;
    const bool behindUtc = fitsPattern(text, "dddd-dd-dd dd:dd:dd -dddd");
    if (!behindUtc && !fitsPattern(text, "dddd-dd-dd dd:dd:dd +dddd"))
        return std::nullopt;
    const year_month_day date(year(digitsAt(text, 0, 4)), month(static_cast<unsigned>(digitsAt(text, 5, 2))),
                              day(static_cast<unsigned>(digitsAt(text, 8, 2))));
    const int hour = digitsAt(text, 11, 2);
    const int minute = digitsAt(text, 14, 2);
    const int second = digitsAt(text, 17, 2);
    const int zoneMinute = digitsAt(text, 23, 2);
    if (!date.ok() || hour > 23 || minute > 59 || second > 59 || zoneMinute > 59)
        return std::nullopt;
    const minutes offset = hours(digitsAt(text, 21, 2)) + minutes(zoneMinute);
    return sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + (behindUtc ? offset : -offset);
}

void EventLogReader::append(std::string_view bytes) {
    if (!readable_)
        return;
    std::string text = std::exchange(incomplete_, {});
    text += bytes;
    incomplete_ = text.substr(text.size() - incompleteBytes(text));
    text.resize(text.size() - incomplete_.size());
    if (!isValidUtf8(text)) {
        readable_ = false;
        lines_.clear();
        return;
    }
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t end = rest.find('\n');
        const std::string_view piece = rest.substr(0, end);
        if (!lastLineEnded_)
            addToLine(lines_.back(), piece);
        else if (!piece.empty())
            addToLine(lines_.emplace_back(), piece);
        lastLineEnded_ = end != std::string_view::npos || (lastLineEnded_ && piece.empty());
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (lines_.size() > maxEntries)
            lines_.pop_front();
    }
}

std::vector<LogEntry> EventLogReader::entries() const {
    std::vector<LogEntry> entries;
    if (!readable_ || !incomplete_.empty())
        return entries;
    entries.reserve(lines_.size());
    for (auto line = lines_.rbegin(); line != lines_.rend(); ++line)
        entries.push_back(entryFrom(*line, entries.size()));
    return entries;
}

} // namespace norvane
