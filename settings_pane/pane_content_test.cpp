#include "settings_pane/pane_content.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"

namespace norvane {

namespace {

const SimulatedFormats formats;
const UntranslatedText texts;

PaneContent contentOf(const BackupSettingsState& state) { return paneContent(state, formats, texts); }

TEST(PaneContent, ShowsTheDiskAsFarAsItIsKnown) {
    const Instant morning = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{9};
    struct Case {
        const char* what;
        std::optional<BackupDisk> disk;
        QString state, latest, button;
        bool canBrowse = false;
        int notices = 0;
    };
    const QString choose = "Choose Backup Disk…";
    const QString change = "Change Backup Disk…";
    const DestinationVerdict shared{DestinationProblem::none, "ext4", "/home/a", "/home/a"};
    const DestinationVerdict turnedReadOnly{DestinationProblem::readOnly, "ext4", "", ""};
    for (const Case& c :
         {Case{"none", {}, "", "", choose},
          {"away", BackupDisk{"Disk", "/mnt/Disk", "", false, {}, morning, {}}, "Not connected",
           "D2026-03-05 09:00", change},
          {"new", BackupDisk{"Disk", "/mnt/Disk", "", true, 5, {}, {}}, "5 bytes available", "None yet",
           change},
          {"in use", BackupDisk{"Disk", "/mnt/Disk", "/mnt/Disk/host", true, 5, morning, shared},
           "5 bytes available", "D2026-03-05 09:00", change, true, 2},
          {"space unknown", BackupDisk{"Disk", "/mnt/Disk", "", true, {}, {}, turnedReadOnly}, "", "None yet",
           change, false, 1}}) {
        const PaneContent content = contentOf({c.disk, {}, {}, BackupFrequency::manual});
        EXPECT_EQ(content.hasDisk, c.disk.has_value()) << c.what;
        EXPECT_EQ(content.diskState, c.state) << c.what;
        EXPECT_EQ(content.latestBackup, c.latest) << c.what;
        EXPECT_EQ(content.chooseDisk, c.button) << c.what;
        EXPECT_EQ(content.canBrowse, c.canBrowse) << c.what;
        EXPECT_EQ(content.notices.size(), c.notices) << c.what;
    }
}

TEST(PaneContent, TellsTheFrequencyAndWhenNothingKeepsIt) {
    struct Case {
        BackupFrequency frequency;
        int shown;
        QString text;
        bool notice = false;
    };
    const QString hourly = "Back up frequency: Automatically every hour";
    for (const Case& c :
         {Case{BackupFrequency::unknown, PaneContent::unset, "Back up frequency: not set yet"},
          {BackupFrequency::manual, PaneContent::manually, "Back up frequency: Manually"},
          {BackupFrequency::hourly, PaneContent::everyHour, hourly},
          {BackupFrequency::hourlyWithoutTimer, PaneContent::everyHour, hourly, true}}) {
        const PaneContent content = contentOf({{}, {}, {}, c.frequency});
        EXPECT_EQ(content.frequency, c.shown);
        EXPECT_EQ(content.frequencyText, c.text);
        EXPECT_EQ(!content.frequencyNotice.isEmpty(), c.notice);
    }
}

TEST(PaneContent, EveryRefusalHasItsReason) {
    QStringList reasons;
    for (const auto refusal :
         {DestinationProblem::missing, DestinationProblem::notAFolder, DestinationProblem::rootFolder,
          DestinationProblem::unprintable, DestinationProblem::isSource, DestinationProblem::readOnly,
          DestinationProblem::insideBackup, DestinationProblem::notWritable, DestinationProblem::noHardLinks})
        reasons.append(refusalText({refusal, "exfat", "", ""}, texts));
    EXPECT_EQ(reasons.removeDuplicates(), 0);
    EXPECT_FALSE(reasons.contains(""));
    EXPECT_TRUE(reasons.last().startsWith("exFAT disks cannot hold backups")) << reasons.last().toStdString();
    EXPECT_EQ(refusalText({}, texts), "");
}

TEST(PaneContent, NamesOfAnyBytesShowInOneLine) {
    struct Case {
        std::string path;
        QString name;
    };
    for (const Case& c : {Case{"/", "/"},
                          {"/mnt/It's \"mine\"", "It's \"mine\""},
                          {"/mnt/two\nlines", "two\\#012lines"},
                          {"/mnt/caf\xe9", "caf\\#351"},
                          {"/mnt/%@ <b>é", "%@ <b>é"}})
        EXPECT_EQ(shownName(c.path), c.name);
    EXPECT_EQ(offerDetails({"/mnt/two\nlines", false, 7, {}}, formats, texts),
              "/mnt/two\\#012lines — 7 bytes available");
}

} // namespace

} // namespace norvane
