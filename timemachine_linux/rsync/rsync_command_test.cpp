#include "timemachine_linux/rsync/rsync_command.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace norvane {

namespace {

using Words = std::vector<std::string>;

std::string withZeros(std::string text) {
    std::replace(text.begin(), text.end(), '|', '\0');
    return text;
}

TEST(RsyncCommand, ReadsASnapshotAndSpeaksOfTheOriginal) {
    struct Case {
        SourcePlace place;
        Words sources;
        std::string target;
        std::string filter;
        std::string shown; ///< How "/s [1]/u/f" is called in messages.
    };
    const std::string named = "/s [1]";
    const std::string ofRoot = withZeros("/home/u/x|/other|/home/a\\[\\*|");
    const std::string ofHome = withZeros("/u/x|/a\\[\\*|");
    const Case cases[] = {
        {{{"/home/u", "/etc"}, "/", ""}, {"/home/u", "/etc"}, "/d/new/", ofRoot, "/s [1]/u/f"},
        {{{"/home/u"}, "/home", named}, {"/s [1]/./u"}, "/d/new/home/", ofHome, "/home/u/f"},
        {{{"/home"}, "/home", named}, {"/s [1]/./"}, "/d/new/home/", ofHome, "/home/u/f"},
        {{{"/u"}, "/", named}, {"/s [1]/./u"}, "/d/new/", ofRoot, "/u/f"},
    };
    for (const Case& c : cases) {
        CopyJob job;
        job.place = c.place;
        job.target = "/d/new";
        job.previousSnapshot = "/d/old";
        const Words arguments = rsyncArguments(job);
        const auto end = std::find(arguments.begin(), arguments.end(), "--");
        Words expected = c.sources;
        expected.push_back(c.target);
        EXPECT_EQ(Words(end + 1, arguments.end()), expected);
        const std::string base = "--link-dest=/d/old" + c.target.substr(6, c.target.size() - 7);
        EXPECT_EQ(std::count(arguments.begin(), arguments.end(), base), 1) << base;
        EXPECT_EQ(filterFileFor(c.place, {"/home/u/x", "/other", "/home/a[*"}), c.filter);
        EXPECT_EQ(withOriginalPaths("failed: \"/s [1]/u/f\"", c.place), "failed: \"" + c.shown + "\"");
    }
}

} // namespace

} // namespace norvane
