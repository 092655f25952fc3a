#include "controller/log/event_log_reader.h"

#include <gtest/gtest.h>

#include "controller/log/event_log.h"

namespace norvane {

namespace {

std::vector<LogEntry> entriesOf(std::string_view text) {
    EventLogReader reader;
    reader.append(text);
    return reader.entries();
}

TEST(EventLogReader, TellsTheStampFromTheMessage) {
    const Instant morning = std::chrono::sys_days{std::chrono::year{2026} / 3 / 1} + std::chrono::hours{8} +
                            std::chrono::minutes{15} + std::chrono::seconds{2};
    const std::string stamp = "2026-03-01 09:15:02 +0100";
    struct Case {
        std::string line;
        std::optional<Instant> date;
        std::string message;
    };
    for (const Case& c :
         {Case{stamp + " Backup finished", morning, "Backup finished"},
          Case{"2026-03-01 04:45:02 -0330 x", morning, "x"}, Case{logTimestamp(morning) + " x", morning, "x"},
          Case{stamp + "…x", morning, "x"}, // any one character stands between
          Case{stamp + "\tx", morning, "x"}, Case{"hello", {}, "hello"}, Case{stamp, {}, stamp},
          Case{stamp + " ", {}, stamp + " "},
          Case{"2026-02-29 09:15:02 +0100 x", {}, "2026-02-29 09:15:02 +0100 x"},
          Case{"2026-03-01 24:15:02 +0100 x", {}, "2026-03-01 24:15:02 +0100 x"},
          Case{"2026-03-01T09:15:02 +0100 x", {}, "2026-03-01T09:15:02 +0100 x"},
          Case{" " + stamp + " x", {}, " " + stamp + " x"}}) {
        EXPECT_EQ(entriesOf(c.line + "\n"), (std::vector{LogEntry{"0|" + c.line, c.date, c.message}}))
            << c.line;
    }
}

TEST(EventLogReader, GivesTheNewestLinesFirst) {
    std::string text;
    for (int line = 1; line <= 250; ++line)
        text += std::to_string(line) + "\n\n";
    const auto entries = entriesOf(text + "unfinished");
    ASSERT_EQ(entries.size(), EventLogReader::maxEntries);
    EXPECT_EQ(entries.front().id, "0|unfinished");
    EXPECT_EQ(entries[1].id, "1|250");
    EXPECT_EQ(entries.back().id, "199|52");
}

TEST(EventLogReader, ReadsNothingFromTextThatIsNotUtf8) {
    EXPECT_TRUE(entriesOf("").empty());
    EXPECT_TRUE(entriesOf("good\nbad \xC3\x28\n").empty());
    EventLogReader reader;
    reader.append("Verifying backup\xE2\x80"); // cut in the middle of a character
    EXPECT_TRUE(reader.entries().empty());
    reader.append("\xA6\n");
    EXPECT_EQ(reader.entries().at(0).message, "Verifying backup…");
    reader.append("\xFF\n");
    reader.append("good\n");
    EXPECT_TRUE(reader.entries().empty());
}

} // namespace

} // namespace norvane
