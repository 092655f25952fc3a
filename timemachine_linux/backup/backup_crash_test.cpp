// The promise that matters most: whenever a backup is killed, what was saved before stays saved.
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <signal.h>
#include <sys/stat.h>
#include <thread>

#include "tests/support/backup_sandbox.h"
#include "timemachine_linux/files/file_lock.h"
#include "timemachine_linux/local_snapshots/local_snapshots.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;
using SteadyClock = std::chrono::steady_clock;

constexpr int filesInTree = 2000;
constexpr std::size_t mostSnapshots = 6;

class KilledBackups : public testing::Test {
protected:
    int random(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

    [[nodiscard]] std::string filePath(int number) const {
        return tree_ + "/d" + std::to_string(number % 40) + "/f" + std::to_string(number);
    }

    void makeTree() {
        for (int folder = 0; folder < 40; ++folder)
            fs::create_directory(tree_ + "/d" + std::to_string(folder));
        for (int number = 0; number < filesInTree; ++number)
            writeFile(filePath(number), std::string(static_cast<std::size_t>(random(4000)), 'a'));
    }

    void changeTree() {
        for (int i = 0; i < 150; ++i) {
            const std::string path = filePath(random(filesInTree));
            switch (random(4)) {
            case 0:
                fs::remove(path);
                break;
            case 1:
                ::chmod(path.c_str(), random(2) == 0 ? 0600 : 0644);
                break;
            default: // often at the size that it had
                writeFile(path, std::string(static_cast<std::size_t>(1000 + random(2)),
                                            static_cast<char>('a' + i % 26)));
            }
        }
    }

    /// Adopts what is new and forgets the oldest: every snapshot that is listed is as it was when it was
    /// made.
    void checkSnapshots(std::uint64_t tree, bool all) {
        const std::vector<std::string> listed = box_.snapshots();
        for (const std::string& path : listed) {
            const auto known = known_.find(path);
            if (known == known_.end())
                known_[path] = tree;
            if (known == known_.end() || all || random(static_cast<int>(listed.size())) == 0) {
                ASSERT_EQ(fingerprint(box_.copyOf(path, tree_)), known_[path])
                    << path << ", round " << round_;
            }
        }
        ASSERT_EQ(known_.size(), listed.size()) << "a snapshot is gone, round " << round_;
        while (known_.size() > mostSnapshots) {
            ASSERT_EQ(fingerprint(box_.copyOf(known_.begin()->first, tree_)), known_.begin()->second);
            fs::remove_all(known_.begin()->first);
            known_.erase(known_.begin());
        }
    }

    void wholeBackup() {
        const auto start = SteadyClock::now();
        ASSERT_EQ(box_.tmutil({"startbackup", "--block"}).exitCode, 0) << "round " << round_;
        const auto taken = std::chrono::duration_cast<std::chrono::microseconds>(SteadyClock::now() - start);
        lastRunMicroseconds_ = static_cast<int>(taken.count());
    }

    [[nodiscard]] std::size_t namedSnapshots() const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(fs::path(known_.begin()->first).parent_path()))
            count += entry.is_directory() && entry.path().extension() != ".inProgress" ? 1 : 0;
        return count;
    }

    void killOften(int rounds);

    enum class Moment { anywhere, finishing, named };

    void killAt(Moment moment) {
        const std::size_t before = known_.size();
        ASSERT_EQ(box_.tmutil({"startbackup"}).exitCode, 0);
        const pid_t worker = box_.worker();
        int longestMicroseconds = lastRunMicroseconds_;
        if (moment == Moment::finishing) {
            // On a busy machine the phase may be over before it is seen.
            ASSERT_TRUE(eventually([&] {
                return box_.status("BackupPhase") == "Finishing" || !FileLock::isHeld(box_.session.runLock);
            }));
            longestMicroseconds /= 2;
        }
        if (moment == Moment::named) {
            const auto limit = SteadyClock::now() + std::chrono::seconds(60);
            while (namedSnapshots() <= before && SteadyClock::now() < limit)
                std::this_thread::sleep_for(std::chrono::microseconds(100));
            longestMicroseconds = 3000;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random(longestMicroseconds)));
        ASSERT_TRUE(::kill(worker, SIGKILL) == 0 || errno == ESRCH);
        ASSERT_TRUE(eventually([&] { return !FileLock::isHeld(box_.session.runLock); }));
    }

    BackupSandbox box_;
    std::string tree_ = box_.tree();
    std::mt19937 random_{20260301};
    std::map<std::string, std::uint64_t> known_;
    int round_ = 0;
    int lastRunMicroseconds_ = 0;
};

void KilledBackups::killOften(int rounds) {
    ASSERT_EQ(box_.tmutil({"setdestination", box_.destination()}).exitCode, 0);
    makeTree();
    ASSERT_NO_FATAL_FAILURE(wholeBackup());
    checkSnapshots(fingerprint(tree_), true);
    for (round_ = 0; round_ < rounds && !HasFatalFailure(); ++round_) {
        changeTree();
        const auto tree = fingerprint(tree_);
        // Half of the moments are about the end, where the copy gets its name.
        const Moment moments[] = {Moment::anywhere, Moment::finishing, Moment::anywhere, Moment::named};
        ASSERT_NO_FATAL_FAILURE(killAt(moments[round_ % 4]));
        checkSnapshots(tree, false);
        // Otherwise the next round's run finds the leftover, while the tree has changed.
        if (random(2) == 0)
            continue;
        ASSERT_NO_FATAL_FAILURE(wholeBackup());
        checkSnapshots(tree, false);
        for (const auto& entry : fs::directory_iterator(fs::path(known_.begin()->first).parent_path()))
            ASSERT_TRUE(!entry.is_directory() || known_.contains(entry.path().string()))
                << entry.path() << " is left, round " << round_;
    }
    checkSnapshots(0, true);
}

TEST_F(KilledBackups, NeverHarmASnapshot) { killOften(200); }

TEST_F(KilledBackups, NeverHarmOneMadeFromALocalSnapshot) {
    const std::string volume = box_.in("volume");
    fs::create_directories(volume);
    const MountedImage image(box_, "btrfs", volume, "rw");
    if (!image.mounted())
        GTEST_SKIP() << "no Btrfs, no loop devices, or no right to mount";
    tree_ = volume + "/tree";
    fs::create_directories(tree_);
    box_.preferences.set("SourceFolders", {PropertyList::Array{{tree_}}});
    killOften(40);
    // One for each run at most, and none that this program would not know.
    const auto found = fs::directory_iterator(LocalSnapshots(volume).folder());
    const auto count = static_cast<std::size_t>(std::distance(begin(found), end(found)));
    EXPECT_EQ(LocalSnapshots(volume).list().size(), count);
    EXPECT_GT(count, 0U);
    EXPECT_EQ(box_.tmutil({"deletelocalsnapshots", "/"}).exitCode, 0);
    EXPECT_TRUE(fs::is_empty(LocalSnapshots(volume).folder()));
}

} // namespace

} // namespace norvane
