#include "controller/log/log_follower.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"

namespace norvane {

namespace {

/// Counts what is read.
struct CountingLog final : LogFile {
    SimulatedLogFile file;
    mutable std::size_t bytesRead = 0;

    void append(std::string_view bytes) override { file.append(bytes); }
    LogFileInfo info() const override { return file.info(); }
    std::string read(std::uint64_t offset, std::size_t count) const override {
        const std::string bytes = file.read(offset, count);
        bytesRead += bytes.size();
        return bytes;
    }
};

std::vector<LogEntry> wholeFile(const std::string& text) {
    EventLogReader reader;
    reader.append(text);
    return reader.entries();
}

TEST(LogFollower, GivesWhatReadingTheWholeFileGives) {
    CountingLog log;
    LogFollower follower(log);
    std::string& text = log.file.text;
    struct Case {
        const char* what;
        std::function<void()> change;
    };
    std::string many;
    for (int line = 0; line < 5000; ++line)
        many += "line " + std::to_string(line) + "\n";
    for (const Case& c : {
             Case{"an empty log", [] {}},
             Case{"its first lines", [&] { text = "one\ntwo\n"; }},
             Case{"half a line", [&] { text += "thr"; }},
             Case{"half a character", [&] { text += "ee\nfour \xE2\x80"; }},
             Case{"the rest of both", [&] { text += "\xA6\n"; }},
             Case{"more than it keeps", [&] { text += many; }},
             Case{"shrunk", [&] { text = "anew\n"; }},
             Case{"rewritten and larger", [&] { text = "other line\n"; }},
             Case{"replaced by one with the same beginning", [&] { text += "more\n", ++log.file.identity; }},
             Case{"replaced by one of the same size", [&] { text.back() = '!', ++log.file.identity; }},
             Case{"not UTF-8", [&] { text += "\xFF\n"; }},
             Case{"still not", [&] { text += "good\n"; }},
             Case{"anew", [&] { text = "good\n"; }},
             Case{"gone", [&] { text.clear(); }},
         }) {
        c.change();
        EXPECT_TRUE(follower.update()) << c.what;
        EXPECT_EQ(follower.entries(), wholeFile(text)) << c.what;
        EXPECT_FALSE(follower.update()) << c.what;
    }
}

TEST(LogFollower, ReadsWhatWasAddedAndKeepsLittle) {
    CountingLog log;
    LogFollower follower(log);
    const std::string longLine(1'000'000, 'x');
    for (int line = 0; line < 10; ++line)
        log.append(longLine + "\n");
    (void)follower.update();
    EXPECT_EQ(follower.entries().front().message, longLine);
    log.bytesRead = 0;
    log.append("Backup finished\n");
    (void)follower.update();
    EXPECT_LT(log.bytesRead, 5000U);
    EXPECT_EQ(follower.entries().front().message, "Backup finished");

    const std::string endless(3 * EventLogReader::maxLineBytes, 'y');
    log.append(endless);
    (void)follower.update();
    EXPECT_EQ(follower.entries().front().message.size(), EventLogReader::maxLineBytes);
    log.append("\nnext\n");
    (void)follower.update();
    EXPECT_EQ(follower.entries().front().message, "next");
}

} // namespace

} // namespace norvane
