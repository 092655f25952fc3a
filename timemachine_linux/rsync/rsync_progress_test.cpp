#include "timemachine_linux/rsync/rsync_progress.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

TEST(RsyncProgress, ReadsLines) {
    struct Case {
        const char* line;
        std::optional<RsyncProgress> expected;
    };
    const Case cases[] = {
        {"              3 100%    0.00kB/s    0:00:00 (xfr#1, to-chk=1/6)", RsyncProgress{3, 1}},
        {" 12151853056  41%   98.50MB/s    0:01:58 (xfr#88013, to-chk=126519/214532)",
         RsyncProgress{12151853056, 88013}},
        {"       32768   0%    0.00kB/s    0:00:00  ", RsyncProgress{32768, std::nullopt}},
        {"1,234 41% 0.00kB/s 0:00:00 (xfr#1,000, to-chk=1/6)", RsyncProgress{1, 1}},
        {"", std::nullopt},
        {"12", std::nullopt},
        {"sending incremental file list", std::nullopt},
        {"-5 3% x", std::nullopt},
        {"99999999999999999999 3% x", std::nullopt},
        {"7 3% (xfr#", RsyncProgress{7, std::nullopt}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(parseRsyncProgressLine(c.line), c.expected) << c.line;
}

TEST(RsyncProgress, FiguresNeverGoBackHoweverTheStreamIsCut) {
    const std::string stream = "  10 5% 1kB/s 0:00:01\r  30 9% 1kB/s 0:00:01 (xfr#2, to-chk=1/6)\r"
                               "  20 9% 1kB/s 0:00:01 (xfr#1, to-chk=1/6)\r 40 9% 1kB/s 0:00:01\n" +
                               std::string(5000, '7') + "\r  99 10%";
    for (std::size_t piece = 1; piece < 70; ++piece) {
        RsyncProgressReader reader;
        std::int64_t previous = 0;
        for (std::size_t start = 0; start < stream.size(); start += piece) {
            reader.feed(std::string_view(stream).substr(start, piece));
            ASSERT_GE(reader.bytes(), previous);
            previous = reader.bytes();
        }
        EXPECT_EQ(reader.bytes(), 40) << piece;
        EXPECT_EQ(reader.files(), 2) << piece;
    }
}

} // namespace

} // namespace norvane
