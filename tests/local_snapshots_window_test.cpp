// The Local Snapshots window: what it reads like, what it asks before it deletes, and what it deletes.
#include "tests/window_test.h"

namespace norvane {

namespace {

class LocalSnapshotsWindow : public WindowTest {
protected:
    static bool waitForSnapshots() {
        return user().waitFor("push button", "Delete All…") &&
               user().waitUntilGone("label", "Reading snapshots…");
    }
};

const std::string newest = "Delete snapshot from Mar 5, 2026, 5:59 AM"; // only local
const std::string covered = "Delete snapshot from Mar 3, 2026, 6:59 AM";

TEST_F(LocalSnapshotsWindow, ReadsInOrder) {
    const std::string separate =
        "label \"Restore points kept on “Linux” (this Mac's startup disk) — separate "
        "from your backups on “Backup Disk”.\"";
    const auto row = [](const std::string& date, const std::string& age, const std::string& badge) {
        return Lines{"list item \"" + date + ", " + age + "\"",
                     badge.empty() ? "" : "label \"" + badge + "\"",
                     "push button \"Delete snapshot from " + date + "\""};
    };
    const auto rows = [&row](const std::string& ofTwo, const std::string& ofThree) {
        Lines lines = {"heading \"5 SNAPSHOTS\"", "list \"Local Snapshots\""};
        for (const Lines& snapshot :
             {row("Mar 5, 2026, 5:59 AM", "3 hr", ofTwo), row("Mar 4, 2026, 3:59 AM", "1 day, 5 hr", ofTwo),
              row("Mar 3, 2026, 5:59 PM", "1 day, 15 hr", ofThree),
              row("Mar 3, 2026, 6:59 AM", "2 days, 2 hr", ofThree),
              row("Mar 2, 2026, 6:59 AM", "3 days, 2 hr", ofThree)})
            lines.insert(lines.end(), snapshot.begin(), snapshot.end());
        std::erase(lines, "");
        return lines;
    };
    struct Case {
        std::string state, subtitle;
        Lines body;
    };
    const std::string other = "label \"Restore points kept on “Startup Disk” (this Mac's startup disk) — "
                              "separate from your backups on “Backup Disk”.\"";
    for (const Case& c :
         {Case{"partly-covered", separate, rows("Only on this Mac", "In backups")},
          Case{"unknown",
               "label \"Restore points kept on “Linux”, this Mac's startup disk — separate from your Time "
               "Machine backups.\"",
               rows("", "")},
          Case{"error",
               separate,
               {"heading \"2 SNAPSHOTS\"", "list \"Local Snapshots\"",
                "list item \"Mar 5, 2026, 5:59 AM, 3 hr\"", "label \"Only on this Mac\"",
                "push button \"" + newest + "\"", "list item \"Mar 3, 2026, 6:59 AM, 2 days, 2 hr\"",
                "label \"In backups\"", "push button \"" + covered + "\"",
                "label \"Couldn't remove 2 snapshot(s). Time Machine may be busy — try again shortly.\""}},
          Case{"empty", other, {"label \"No local snapshots on your startup disk.\""}}}) {
        SCOPED_TRACE(c.state);
        Lines expected = {"frame \"Local Snapshots\"", "heading \"Local Snapshots\"", c.subtitle};
        expected.insert(expected.end(), c.body.begin(), c.body.end());
        expected.insert(expected.end(),
                        {"label \"Deleting local snapshots only frees space on this Mac's startup disk — "
                         "nothing on the backup drive is touched.\"",
                         "push button \"Delete All…\""});
        const PeerProcess program = show("snapshots-" + c.state);
        ASSERT_TRUE(waitForSnapshots()) << program.output();
        if (const auto first = user().find("list item", "Mar 5, 2026, 5:59 AM, 3 hr")) {
            EXPECT_EQ(first->place.right(), user().find("push button", "Delete All…")->place.right());
        }
        if (c.state == "error") {
            ASSERT_TRUE(user().press("push button", "Delete All…"));
            ASSERT_TRUE(user().waitFor("push button", "Delete All"));
            ASSERT_TRUE(user().press("push button", "Delete All"));
            ASSERT_TRUE(user().waitFor("heading", "2 SNAPSHOTS"));
        }
        EXPECT_EQ(describe(user().elements()), joined(expected));
    }
}

TEST_F(LocalSnapshotsWindow, AsksAndDeletesWhatWasConfirmed) {
    struct Case {
        std::string state, button, message, answer;
        std::size_t deleted;
    };
    const std::string one = "Delete this local snapshot?";
    const std::string all = "Delete all local snapshots?";
    const std::string unaffected = " Your backups on the backup drive are unaffected.";
    for (const Case& c :
         {Case{"partly-covered", covered,
               "The Mar 3, 2026, 6:59 AM snapshot will be removed from your startup disk." + unaffected,
               "Delete", 1},
          Case{"partly-covered", newest,
               "The Mar 5, 2026, 5:59 AM restore point isn't in your backups yet — deleting it removes that "
               "point in time permanently.",
               "Delete", 1},
          Case{"covered", "Delete All…",
               "All 5 local snapshots will be removed from your startup disk to free space." + unaffected,
               "Delete All", 5},
          Case{"partly-covered", "Delete All…",
               "All 5 local snapshots will be removed from your startup disk — including 2 not in your "
               "backups yet, whose restore points will be lost permanently.",
               "Delete All", 5}}) {
        SCOPED_TRACE(c.message);
        const std::string& title = c.deleted == 1 ? one : all;
        const PeerProcess program = show("snapshots-" + c.state);
        ASSERT_TRUE(waitForSnapshots()) << program.output();
        for (const std::string& pressed : {std::string("Cancel"), c.answer}) {
            EXPECT_EQ(program.output(), "") << "before the answer";
            ASSERT_TRUE(user().press("push button", c.button));
            ASSERT_TRUE(user().waitFor("dialog", title)) << describe(user().elements());
            EXPECT_TRUE(user().find("label", c.message)) << describe(user().elements());
            ASSERT_TRUE(user().press("push button", pressed));
            ASSERT_TRUE(user().waitUntilGone("dialog", title));
        }
        EXPECT_TRUE(user().waitFor("heading", "4 SNAPSHOTS", c.deleted == 1 ? 30 : 0) ||
                    user().waitFor("label", "No local snapshots on your startup disk.", 5))
            << describe(user().elements());
        EXPECT_FALSE(user().find("push button", c.deleted == 1 ? c.button : newest));
        ASSERT_TRUE(program.waitForOutput("tmutil listlocalsnapshots"));
        const std::string output = program.output();
        std::size_t deletions = 0;
        for (auto at = output.find("deletelocal"); at != std::string::npos;
             at = output.find("deletelocal", at + 1))
            ++deletions;
        EXPECT_EQ(deletions, c.deleted) << output;
    }
}

TEST_F(LocalSnapshotsWindow, WorksByKeyboardAlone) {
    const PeerProcess program = show("snapshots-partly-covered");
    ASSERT_TRUE(waitForSnapshots()) << program.output();
    EXPECT_EQ(joined(tabStops()), joined({newest, "Delete snapshot from Mar 4, 2026, 3:59 AM",
                                          "Delete snapshot from Mar 3, 2026, 5:59 PM", covered,
                                          "Delete snapshot from Mar 2, 2026, 6:59 AM", "Delete All…"}));
    ASSERT_TRUE(focusIsOn(newest));
    user().type("Return");
    ASSERT_TRUE(user().ringIsOn("Cancel")) << "so that nothing is deleted in haste";
    EXPECT_EQ(joined(tabStops()), joined({"Delete", "Cancel"})) << "what lies below is out of reach";
    user().type("Escape");
    ASSERT_TRUE(user().waitUntilGone("dialog", "Delete this local snapshot?"));
    EXPECT_TRUE(user().ringIsOn(newest)) << "back where it came from";
    EXPECT_EQ(program.output(), "");

    user().type("space");
    ASSERT_TRUE(focusIsOn("Cancel"));
    user().type("Tab");
    ASSERT_TRUE(focusIsOn("Delete"));
    user().type("Return");
    EXPECT_TRUE(program.waitForOutput("tmutil deletelocalsnapshots 2026-03-05-055930"));
    EXPECT_TRUE(user().waitFor("heading", "4 SNAPSHOTS"));
    EXPECT_TRUE(user().ringIsOn("Delete snapshot from Mar 4, 2026, 3:59 AM")) << "the keyboard goes on";
    user().type("ctrl+w");
    EXPECT_TRUE(user().waitUntilGone("frame", "Local Snapshots"));
}

} // namespace

} // namespace norvane
