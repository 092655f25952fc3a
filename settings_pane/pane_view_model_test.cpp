#include "settings_pane/pane_view_model.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"
#include "platform/simulated/simulated_time.h"
#include "tests/support/simulated_backup_settings.h"

namespace norvane {

namespace {

struct Pane {
    Pane() { settings.state.sources = {"/home/a"}; }

    PaneViewModel& open() {
        made.opened();
        settle();
        return made;
    }
    void settle() { time.settle(); }
    static QStringList column(QAbstractItemModel* rows, const char* role) {
        QStringList values;
        for (int row = 0; row < rows->rowCount(); ++row)
            values.append(rows->data(rows->index(row, 0), rows->roleNames().key(role)).toString());
        return values;
    }

    SimulatedTime time{std::chrono::sys_days{std::chrono::year{2026} / 3 / 5}};
    SimulatedBackupSettings settings;
    SimulatedWorkspace workspace;
    SimulatedFormats formats;
    UntranslatedText texts;
    PaneViewModel made{{settings, time, time, workspace, formats, texts, "/home/a"}};
};

TEST(Pane, FollowsWhatOthersChangeWhileItIsShown) {
    Pane p;
    EXPECT_FALSE(p.made.known());
    PaneViewModel& model = p.open();
    EXPECT_TRUE(model.known());
    p.settings.state.frequency = BackupFrequency::manual;
    p.time.advance(3);
    EXPECT_EQ(model.content().frequency, PaneContent::manually);
    model.closed();
    p.settings.loads = 0;
    p.time.advance(60);
    EXPECT_EQ(p.settings.loads, 0);
}

TEST(Pane, MakesWhatWasChosenThoughItIsClosed) {
    Pane p;
    PaneViewModel& model = p.open();
    EXPECT_FALSE(model.changing());
    model.setFrequency(PaneContent::everyHour);
    model.closed();
    EXPECT_TRUE(model.changing());
    p.settle();
    EXPECT_FALSE(model.changing());
    EXPECT_EQ(p.settings.state.frequency, BackupFrequency::hourly);
}

TEST(Pane, OffersMountedDrivesFirstAndUsesTheChosenOne) {
    Pane p;
    p.settings.mounted = {{"/media/a/Stick", false, 8, {DestinationProblem::noHardLinks, "vfat", "", ""}},
                          {"/media/a/Disk", false, 9, {}}};
    p.settings.folders["/home/a"] = {"b", "A", "caf\xe9"};
    PaneViewModel& model = p.open();
    model.chooseDisk();
    EXPECT_EQ(model.offersNote(), "Looking for drives…");
    p.settle();
    EXPECT_EQ(Pane::column(model.offers(), "name"), (QStringList{"Stick", "Disk"}));
    EXPECT_EQ(Pane::column(model.offers(), "usable"), (QStringList{"false", "true"}));
    EXPECT_FALSE(model.canUseDisk());
    model.selectOffer(0);
    EXPECT_FALSE(model.canUseDisk()) << "it has no hard links";
    model.useDisk();
    p.settle();
    EXPECT_FALSE(p.settings.state.disk);

    model.chooseDiskFolder();
    p.settle();
    FolderChooser& folders = *model.folderChooser();
    EXPECT_EQ(Pane::column(folders.rows(), "name"), (QStringList{"A", "b", "caf\\#351"}));
    folders.enter(0);
    p.settle();
    EXPECT_EQ(folders.note(), "This folder cannot be read.");
    const DestinationVerdict inside{DestinationProblem::none, "ext4", "/home/a", "/home/a"};
    p.settings.offers["/home/a/A"] = {"/home/a/A", false, 1, inside};
    folders.accept();
    p.settle();
    EXPECT_EQ(Pane::column(model.offers(), "chosen"), (QStringList{"false", "false", "true"}));
    EXPECT_EQ(model.diskNotices().size(), 2) << "allowed, and said";
    EXPECT_TRUE(model.canUseDisk());
    model.selectOffer(1);
    model.useDisk();
    EXPECT_FALSE(model.choosingDisk());
    p.settle();
    ASSERT_TRUE(p.settings.state.disk);
    EXPECT_EQ(p.settings.state.disk->folder, "/media/a/Disk");
    EXPECT_TRUE(model.content().hasDisk);
}

TEST(Pane, AFailedChangeIsToldAndShowsWhatIsTrue) {
    Pane p;
    p.settings.state.frequency = BackupFrequency::manual;
    PaneViewModel& model = p.open();
    p.settings.trouble = "no manager\x01";
    model.setFrequency(PaneContent::everyHour);
    EXPECT_TRUE(model.busy());
    EXPECT_EQ(model.content().frequency, PaneContent::everyHour) << "what was chosen shows meanwhile";
    p.settle();
    EXPECT_FALSE(model.busy());
    EXPECT_EQ(model.content().frequency, PaneContent::manually);
    EXPECT_TRUE(model.trouble().contains("no manager\\#001")) << model.trouble().toStdString();
    p.settings.trouble.clear();
    model.setFrequency(PaneContent::everyHour);
    p.settle();
    EXPECT_EQ(model.trouble(), "");
    EXPECT_EQ(p.settings.state.frequency, BackupFrequency::hourly);
}

TEST(Pane, MakesChangesInOrderAndTheLastChoiceWins) {
    Pane p;
    p.settings.state.sources = {"/home/a", "/srv"};
    p.settings.mounted = {{"/media/a/One", false, 9, {}}, {"/media/a/Two", false, 9, {}}};
    PaneViewModel& model = p.open();
    p.settings.whenLoading = [&] { p.time.spend(2); };
    std::vector<Instant> made;
    p.settings.whenChanging = [&] {
        made.push_back(p.time.now());
        p.time.spend(5);
        p.settings.trouble = made.size() == 1 ? "no manager" : made.size() == 3 ? "no room" : "";
    };
    p.time.advance(3.5); // a reading is on its way that knows nothing of what follows
    model.setFrequency(PaneContent::everyHour);
    model.setFrequency(PaneContent::manually); // never begins
    model.removeSource(0);
    model.removeSource(0);
    EXPECT_EQ(Pane::column(model.sources(), "path"), QStringList{"/srv"}) << "the last one stays";
    for (const int offer : {0, 1}) {
        model.chooseDisk();
        p.settle();
        model.selectOffer(offer);
        model.useDisk();
    }
    model.addExclusion();
    model.folderChooser()->accept();
    model.setFrequency(PaneContent::manually);
    for (int second = 1; second < 25; ++second) {
        p.time.advance(1);
        EXPECT_TRUE(model.busy()) << second;
        EXPECT_EQ(model.content().frequency, PaneContent::manually) << second;
        EXPECT_EQ(Pane::column(model.sources(), "path"), QStringList{"/srv"}) << second;
    }
    p.time.advance(3);
    EXPECT_FALSE(model.busy());
    ASSERT_EQ(made.size(), 5U);
    for (std::size_t i = 1; i < made.size(); ++i)
        EXPECT_EQ(secondsBetween(made[i - 1], made[i]), 5) << "one after another";
    EXPECT_EQ(model.trouble(), "The backup disk was not changed: no room")
        << "nothing of a frequency that nobody wants any more";
    EXPECT_FALSE(model.content().hasDisk);
    EXPECT_EQ(model.content().frequency, PaneContent::manually);
    EXPECT_EQ(p.settings.state.exclusions, std::vector<std::string>{"/home/a"});
}

TEST(Pane, ListsOfFoldersAreEdited) {
    Pane p;
    p.settings.folders["/home/a"] = {"Downloads"};
    PaneViewModel& model = p.open();
    EXPECT_EQ(Pane::column(model.sources(), "removable"), QStringList{"false"}) << "the last one stays";
    model.removeSource(0);
    p.settle();
    EXPECT_EQ(p.settings.state.sources.size(), 1U);

    model.addSource();
    p.settle();
    model.folderChooser()->up();
    model.folderChooser()->accept();
    p.settle();
    EXPECT_EQ(Pane::column(model.sources(), "path"), (QStringList{"/home/a", "/home"}));
    model.removeSource(0);
    p.settle();
    EXPECT_EQ(p.settings.state.sources, std::vector<std::string>{"/home"});

    model.addExclusion();
    p.settle();
    model.folderChooser()->enter(0);
    model.folderChooser()->accept();
    p.settle();
    EXPECT_EQ(Pane::column(model.exclusions(), "path"), QStringList{"/home/a/Downloads"});
    model.removeExclusion(0);
    model.removeExclusion(7);
    p.settle();
    EXPECT_TRUE(p.settings.state.exclusions.empty());
}

TEST(Pane, OpensTheFolderOfTheBackups) {
    Pane p;
    PaneViewModel& model = p.open();
    model.browseBackups();
    EXPECT_TRUE(p.workspace.opened.empty());
    p.settings.state.disk = BackupDisk{"D", "/mnt/My Disk", "/mnt/My Disk/100% #1", true, {}, {}, {}};
    p.time.advance(3);
    model.browseBackups();
    EXPECT_EQ(p.workspace.opened, std::vector<std::string>{"file:///mnt/My%20Disk/100%25%20%231"});
}

} // namespace

} // namespace norvane
