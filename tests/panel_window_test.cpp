// The panel in a real window: what it reads like, and what its controls do.
#include "tests/window_test.h"

namespace norvane {

namespace {

class PanelWindow : public WindowTest {
protected:
    static bool waitForPanel() { return user().waitFor("push button", "Quit Norvane").has_value(); }
};

const Lines footer = {"push button \"Backup Health\"", "push button \"Settings\"",
                      "push button \"Quit Norvane\""};

TEST_F(PanelWindow, ReadsInOrderInEveryState) {
    struct Case {
        std::string state;
        Lines head;
        std::string schedule = "Daily at 12:30, 20:00";
        std::string lastBackup = "14 hr, 10 min ago";
        Lines buttons = {"Back Up Now", "Skip Next", "Pause"};
        std::string lastEvent = "Launched";
    };
    const Lines whileRunning = {"Backup in Progress…", "Skip Next", "Pause"};
    const std::string unverified = "Backup ended without a new snapshot on any destination";
    const std::string next = "label \"Next backup in 3 hr, 20 min  (12:30 PM)\"";
    const Case cases[] = {
        {.state = "running",
         .head = {"heading \"Backing Up…\"", "label \"Copying\"", "progress bar \"5.22 GB copied · 41%\"",
                  "label \"about 7 minutes left\"", "push button \"Stop\""},
         .lastBackup = "14 hr, 15 min ago",
         .buttons = whileRunning,
         .lastEvent = "Backup started"},
        {.state = "running-unknown",
         .head = {"heading \"Backing Up…\"", "label \"Finding Changes\"", "progress bar \"Backing Up…\"",
                  "push button \"Stop\""},
         .lastBackup = "14 hr, 16 min ago",
         .buttons = whileRunning,
         .lastEvent = "Backup started"},
        {.state = "stalled",
         .head = {"heading \"Backing Up…\"", "label \"Copying\"", "progress bar \"4.1 GB copied · 33%\"",
                  "push button \"Stop\"", "label \"Backup appears stalled — no progress in a while\""},
         .lastBackup = "14 hr, 35 min ago",
         .buttons = whileRunning,
         .lastEvent = "Backup appears stalled — no progress in 10 min"},
        {.state = "failing",
         .head = {"heading \"Backups are failing\"", "label \"Next backup in 2 hr, 50 min  (12:30 PM)\""},
         .lastBackup = "14 hr, 40 min ago",
         .lastEvent = unverified},
        {.state = "attention",
         .head = {"heading \"Backups need attention\"", "label \"Next backup in 3 hr, 10 min  (12:30 PM)\""},
         .lastBackup = "14 hr, 20 min ago",
         .lastEvent = unverified},
        {.state = "waiting",
         .head = {"heading \"Waiting\"",
                  "label \"Running on battery power, camera is in use — next check 4 min\"",
                  "label \"Will back up by 4:30 PM regardless\"", "push button \"Dismiss\"",
                  "label \"Runs by 4:30 PM regardless\"", "push button \"Dismiss\""},
         .lastBackup = "17 hr, 46 min ago",
         .lastEvent = "Waiting running on battery power, camera is in use"},
        {.state = "paused",
         .head = {"heading \"Paused\"", "label \"Until 10:10 AM — resumes automatically\""},
         .buttons = {"Back Up Now", "Skip Next", "Resume"},
         .lastEvent = "Paused until Mar 5, 2026, 10:10 AM"},
        {.state = "idle",
         .head = {"heading \"Nothing Scheduled\"", "label \"No rules produce an upcoming backup\""},
         .schedule = "No schedule"},
        {.state = "scheduled", .head = {"heading \"On Schedule\"", next}},
        {.state = "catch-up",
         .head = {"heading \"On Schedule\"", "label \"Next backup in 3 min  (9:05 AM)\"",
                  "label \"Catching up a backup that was missed\""},
         .schedule = "Daily at 20:00",
         .lastBackup = "14 hr, 2 min ago"},
        {.state = "skip-armed",
         .head = {"heading \"On Schedule\"", "label \"Next backup in 10 hr, 50 min  (8:00 PM)\"",
                  "label \"Next occurrence will be skipped\""},
         .lastEvent = "Skipping the 12:30 PM backup"},
        {.state = "blackout",
         .head = {"heading \"On Schedule\"", "label \"Next backup in 4 hr, 50 min  (2:00 PM)\"",
                  "label \"Deferred from 12:30 PM by a blackout window\""}},
        {.state = "crash-notice",
         .head = {"heading \"On Schedule\"", next, "label \"Norvane crashed last time\"",
                  "push button \"Email Report…\"", "push button \"Ignore\""}},
        {.state = "automatic-on",
         .head = {"heading \"On Schedule\"", next,
                  "push button \"Apple's automatic backups are also on — click to set Time Machine to "
                  "Manually\""}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.state);
        Lines expected = {"frame \"Norvane\"", "panel \"Norvane\"", "label \"NORVANE\""};
        expected.insert(expected.end(), c.head.begin(), c.head.end());
        expected.insert(expected.end(), {"label \"Schedule: " + c.schedule + "\"",
                                         "label \"Last backup: " + c.lastBackup + "\"",
                                         "label \"Destination: Backup Disk\""});
        for (const std::string& button : c.buttons)
            expected.push_back("push button \"" + button + "\"");
        expected.push_back("label \"" + c.lastEvent + "\"");
        expected.insert(expected.end(), footer.begin(), footer.end());

        const PeerProcess program = show(c.state);
        ASSERT_TRUE(waitForPanel()) << program.output();
        EXPECT_EQ(describe(user().elements()), joined(expected));
    }
}

TEST_F(PanelWindow, TabReachesEveryEnabledControlInReadingOrder) {
    struct Case {
        std::string state;
        Lines stops;
    };
    for (const Case& c :
         {Case{"running", {"Stop", "Backup Health", "Settings", "Quit Norvane"}},
          {"waiting",
           {"Dismiss", "Dismiss", "Back Up Now", "Skip Next", "Pause", "Backup Health", "Settings",
            "Quit Norvane"}},
          {"paused", {"Back Up Now", "Skip Next", "Resume", "Backup Health", "Settings", "Quit Norvane"}},
          {"idle", {"Back Up Now", "Pause", "Backup Health", "Settings", "Quit Norvane"}},
          {"crash-notice",
           {"Email Report…", "Ignore", "Back Up Now", "Skip Next", "Pause", "Backup Health", "Settings",
            "Quit Norvane"}}}) {
        SCOPED_TRACE(c.state);
        const PeerProcess program = show(c.state);
        ASSERT_TRUE(waitForPanel()) << program.output();
        EXPECT_EQ(joined(tabStops()), joined(c.stops));
    }
}

TEST_F(PanelWindow, EveryControlHasItsEffect) {
    struct Case {
        std::string state;
        Lines presses;                ///< One button or menu item after the other.
        std::string printed;          ///< By the program about what it was asked to do.
        std::string role, name;       ///< What shows then.
        std::string goneRole, gone{}; ///< What does not.
    };
    const std::string crash = "Norvane crashed last time";
    const Case cases[] = {
        {"running", {"Stop"}, "tmutil stopbackup", "heading", "Backing Up…", "", ""},
        {"running", {"Backup in Progress…"}, "", "heading", "Backing Up…", "", ""},
        {"scheduled", {"Back Up Now"}, "tmutil startbackup", "label", "Manual backup requested", "", ""},
        {"scheduled", {"Skip Next"}, "Skipping the", "label", "Next occurrence will be skipped", "", ""},
        {"scheduled", {"Pause", "For 1 Hour"}, "", "label", "Until 10:10 AM — resumes automatically", "", ""},
        {"scheduled",
         {"Pause", "For 3 Hours"},
         "",
         "label",
         "Until 12:10 PM — resumes automatically",
         "",
         ""},
        {"scheduled",
         {"Pause", "Until Tomorrow"},
         "Paused until Mar 6",
         "push button",
         "Resume",
         "push button",
         "Pause"},
        {"paused", {"Resume"}, "Schedule resumed", "push button", "Pause", "push button", "Resume"},
        {"waiting", {"Dismiss"}, "", "push button", "Back Up Now", "label", "Runs by 4:30 PM regardless"},
        {"crash-notice",
         {"Email Report…"},
         "e-mail with /reports/Norvane-2026-03-05-075900.ips",
         "heading",
         "On Schedule",
         "label",
         crash},
        {"crash-notice", {"Ignore"}, "", "heading", "On Schedule", "label", crash},
        {"automatic-on",
         {"Apple's automatic backups are also on — click to set Time Machine to Manually"},
         "opened x-apple.systempreferences:com.apple.Time-Machine-Settings.extension",
         "heading",
         "On Schedule",
         "",
         ""},
        {"idle",
         {"Skip Next", "Backup Health", "Settings"},
         "health\nsettings",
         "heading",
         "Nothing Scheduled",
         "",
         ""},
        {"scheduled", {"Quit Norvane", "Cancel"}, "", "heading", "On Schedule", "heading", "Quit Norvane?"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.state + ": " + joined(c.presses));
        const PeerProcess program = show(c.state);
        ASSERT_TRUE(waitForPanel()) << program.output();
        for (const std::string& name : c.presses) {
            const bool inMenu = &name != &c.presses.front() && c.presses.front() == "Pause";
            const std::string role = inMenu ? "menu item" : "push button";
            ASSERT_TRUE(user().waitFor(role, name)) << describe(user().elements());
            EXPECT_TRUE(user().press(role, name));
        }
        EXPECT_TRUE(program.waitForOutput(c.printed)) << program.output();
        EXPECT_TRUE(user().waitFor(c.role, c.name, 4)) << describe(user().elements());
        if (!c.gone.empty()) {
            EXPECT_TRUE(user().waitUntilGone(c.goneRole, c.gone)) << describe(user().elements());
        }
        EXPECT_EQ(program.output().find("startbackup") != std::string::npos, c.presses[0] == "Back Up Now");
    }
}

TEST_F(PanelWindow, IsAsHighAsItsContent) {
    const PeerProcess program = show("scheduled");
    ASSERT_TRUE(waitForPanel());
    const auto height = [] {
        const auto frame = user().find("frame", "Norvane");
        return frame ? frame->place.height() : 0;
    };
    const auto holdsLastButton = [] {
        const auto frame = user().find("frame", "Norvane");
        const auto button = user().find("push button", "Quit Norvane");
        return frame && button && frame->place.contains(button->place);
    };
    EXPECT_TRUE(eventually(holdsLastButton));
    const int first = height();
    EXPECT_TRUE(user().press("push button", "Skip Next"));
    EXPECT_TRUE(eventually([&] { return height() > first && holdsLastButton(); })) << height();
    EXPECT_TRUE(user().press("push button", "Quit Norvane"));
    EXPECT_TRUE(eventually([&] { return height() < first; })) << height();
    EXPECT_TRUE(user().press("push button", "Cancel"));
    EXPECT_TRUE(eventually([&] { return height() > first && holdsLastButton(); })) << height();
}

TEST_F(PanelWindow, AsksBeforeItQuits) {
    PeerProcess program = show("scheduled");
    ASSERT_TRUE(waitForPanel());
    EXPECT_TRUE(user().press("push button", "Quit Norvane"));
    ASSERT_TRUE(user().waitFor("heading", "Quit Norvane?"));
    const std::string message =
        "label \"Scheduled backups stop while Norvane isn't running — and Time Machine's automatic mode is "
        "off, "
        "so nothing will back up until you reopen Norvane or turn automatic backups back on in System "
        "Settings.\"";
    EXPECT_EQ(describe(user().elements()), joined({"frame \"Norvane\"", "panel \"Norvane\"",
                                                   "label \"NORVANE\"", "heading \"Quit Norvane?\"", message,
                                                   "push button \"Cancel\"", "push button \"Quit\""}));
    user().type("Return");
    ASSERT_TRUE(user().waitUntilGone("heading", "Quit Norvane?")) << "Cancel is the default";
    const auto power = user().find("push button", "Quit Norvane");
    ASSERT_TRUE(power);
    user().click(power->place.center());
    const auto quit = user().waitFor("push button", "Quit");
    ASSERT_TRUE(quit);
    user().click(quit->place.center());
    EXPECT_EQ(program.waitForExit(), 0);
}

TEST_F(PanelWindow, WhatIsCutOffIsToldByATip) {
    const PeerProcess program = show("failing");
    const std::string reason = "Backup ended without a new snapshot on any destination";
    const auto cut = user().waitFor("label", reason);
    ASSERT_TRUE(cut) << program.output();
    user().moveTo(cut->place.center());
    EXPECT_TRUE(user().waitFor("tool tip", reason, 10)) << describe(user().elements());
    user().moveTo(user().find("label", "Destination: Backup Disk")->place.center());
    EXPECT_TRUE(user().waitUntilGone("tool tip", reason, 10)) << "and nothing else is";
}

TEST_F(PanelWindow, WorksByKeyboardAlone) {
    const PeerProcess program = show("scheduled");
    ASSERT_TRUE(waitForPanel());
    const auto focusOn = [](const std::string& name) {
        for (int i = 0; i < 12; ++i) {
            const auto now = user().focused();
            if (now && now->name == name)
                return true;
            user().type("Tab");
        }
        return false;
    };
    user().moveTo({0, 0}); // a pointer that rests on the menu chooses in it, too
    ASSERT_TRUE(focusOn("Pause"));
    user().type("space");
    ASSERT_TRUE(user().waitFor("menu item", "For 3 Hours"));
    user().type("Escape");
    ASSERT_TRUE(user().waitUntilGone("menu item", "For 3 Hours"));
    ASSERT_TRUE(user().find("push button", "Pause")) << "Escape closed the panel with the menu";
    EXPECT_TRUE(focusIsOn("Pause")) << "the focus did not return";

    user().type("Return");
    ASSERT_TRUE(user().waitFor("menu item", "For 1 Hour"));
    user().type("Down");
    user().type("Down");
    user().type("Return");
    EXPECT_TRUE(user().waitFor("label", "Until 12:10 PM — resumes automatically"))
        << describe(user().elements());

    ASSERT_TRUE(focusOn("Skip Next"));
    user().type("Return");
    EXPECT_TRUE(user().waitFor("label", "Next occurrence will be skipped"));
    user().type("Escape");
    EXPECT_TRUE(user().waitUntilGone("push button", "Quit Norvane")) << "Escape closes the panel";
}

} // namespace

} // namespace norvane
