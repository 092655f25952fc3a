#include "timemachine_linux/snapshots/leftover_note.h"

#include <gtest/gtest.h>

#include "tests/support/backup_sandbox.h"

namespace norvane {

namespace {

TEST(UnfinishedSnapshots, AreTrustedOnlyInTheSameBootOrWhenSynced) {
    const BackupSandbox box;
    const std::string path = box.in("note");
    EXPECT_FALSE(canTrust(readLeftoverNote(path), "disk", "name", "boot"));
    struct Case {
        LeftoverNote note;
        bool trusted;
    };
    const Case cases[] = {
        {{"disk", "name", "boot"}, true},     {{"disk", "name", ""}, true},
        {{"disk", "name", "earlier"}, false}, {{"disk", "other", ""}, false},
        {{"other", "name", "boot"}, false},
    };
    for (const Case& c : cases) {
        ASSERT_TRUE(writeLeftoverNote(path, c.note));
        EXPECT_EQ(canTrust(readLeftoverNote(path), "disk", "name", "boot"), c.trusted) << c.note.bootId;
    }
}

} // namespace

} // namespace norvane
