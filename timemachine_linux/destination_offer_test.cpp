#include "timemachine_linux/destination_offer.h"

#include <gtest/gtest.h>

namespace norvane {
namespace {

using enum OfferRefusal;

OfferFacts goodFacts(const std::string& folder) { return {folder, true, true, false, true, "ext4", "sdb"}; }

template <class Change>
OfferFacts changed(Change change) {
    OfferFacts facts = goodFacts("/mnt/disk");
    change(facts);
    return facts;
}

TEST(OfferCheck, RefusesWhatCannotHoldBackups) {
    struct Case {
        const char* what;
        OfferFacts facts;
        OfferRefusal refusal;
    };
    using Facts = OfferFacts;
    for (const Case& c : {Case{"a disk of its own", goodFacts("/mnt/disk"), none},
                          {"away", changed([](Facts& f) { f.exists = false; }), missing},
                          {"a file", changed([](Facts& f) { f.isFolder = false; }), notAFolder},
                          {"everything", goodFacts("/"), rootFolder},
                          {"two lines", goodFacts("/mnt/two\nlines"), unprintable},
                          {"another encoding", goodFacts("/mnt/caf\xe9"), unprintable},
                          {"quotes", goodFacts("/mnt/\"it's\" mine"), none},
                          {"what is backed up", goodFacts("/home/anna"), isSource},
                          {"above what is backed up", goodFacts("/home"), none},
                          {"a FAT stick", changed([](Facts& f) { f.fileSystem = "vfat"; }), noHardLinks},
                          {"an exFAT stick, read-only", changed([](Facts& f) {
                               f.fileSystem = "exfat";
                               f.readOnly = true;
                           }),
                           noHardLinks},
                          {"an unknown file system", changed([](Facts& f) { f.fileSystem = ""; }), none},
                          {"a disk with errors", changed([](Facts& f) {
                               f.readOnly = true;
                               f.writable = false;
                           }),
                           readOnly},
                          {"somebody else's", changed([](Facts& f) { f.writable = false; }), notWritable}})
        EXPECT_EQ(checkOffer(c.facts, {{"/home/anna", "sda"}}).refusal, c.refusal) << c.what;
}

TEST(OfferCheck, TellsWhatItsOwnerShouldKnow) {
    struct Case {
        const char* folder;
        const char* disk;
        std::string insideSource;
        std::string sharesDiskWith;
    };
    const std::vector<SourceFacts> sources = {{"/home/anna", "sda"}, {"/srv/data", ""}};
    for (const Case& c : {Case{"/mnt/disk", "sdb", "", ""},
                          {"/home/annabel/backups", "sda", "", "/home/anna"},
                          {"/home/anna/backups", "sda", "/home/anna", "/home/anna"},
                          {"/home/anna/mounted", "sdb", "/home/anna", ""},
                          {"/srv/data/backups", "", "/srv/data", ""}}) {
        OfferFacts facts = goodFacts(c.folder);
        facts.disk = c.disk;
        EXPECT_EQ(checkOffer(facts, sources), (OfferCheck{none, "ext4", c.insideSource, c.sharesDiskWith}))
            << c.folder;
    }
}

TEST(OfferCheck, LooksAtTheFolderItself) {
    const std::string folder = testing::TempDir();
    const OfferFacts facts = offerFactsOf(folder);
    EXPECT_TRUE(facts.exists && facts.isFolder && facts.writable && !facts.readOnly);
    EXPECT_NE(facts.disk, "");
    EXPECT_EQ(facts.disk, diskOf(facts.folder));
    EXPECT_FALSE(offerFactsOf(folder + "/no such folder").exists);
    EXPECT_FALSE(offerFactsOf("/proc/self/exe").isFolder);
    EXPECT_EQ(offerFactsOf("/proc").fileSystem, "proc");
    EXPECT_NE(diskOf("/proc"), facts.disk);
}

} // namespace
} // namespace norvane
