// The running program with the real tools and real files.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "tests/program_fixture.h"

namespace norvane {

namespace {

void fillWithFiles(const std::string& folder, int count, int bytesEach) {
    std::filesystem::create_directories(folder);
    for (int i = 0; i < count; ++i)
        std::ofstream(folder + "/file " + std::to_string(i))
            << std::string(static_cast<std::size_t>(bytesEach), 'x') << i;
}

/// The lines of the log that fail the test are the ones to read.
#define ASSERT_LOGGED(position, text, seconds)                                                               \
    do {                                                                                                     \
        const auto found = user.waitForLog(text, seconds, position);                                         \
        ASSERT_TRUE(found) << "not logged: " << (text) << "\n" << user.log();                                \
        (position) = *found;                                                                                 \
    } while (false)

TEST(Norvane, RunsScheduledBackupsFromThePlanToTheProof) {
    ProgramFixture user;
    fillWithFiles(user.source() + "/notes", 300, 2000);
    user.makeBackupDue();
    const pid_t program = user.start();

    std::size_t position = 0;
    ASSERT_LOGGED(position, "Next backup scheduled for", 10);
    ASSERT_LOGGED(position, "Scheduled backup requested", 90);
    ASSERT_LOGGED(position, "Backup started", 30);
    ASSERT_LOGGED(position, "Backup finished — snapshot verified", 60);
    ASSERT_LOGGED(position, "Next backup scheduled for", 5);
    const std::string snapshot = user.tmutil("latestbackup");
    EXPECT_EQ(
        user.shell("diff -r --no-dereference '" + user.source() + "' '" + snapshot + user.source() + "'"),
        "");

    // A backup is due again, but the destination is gone: told at once, and tried again in a quarter of an
    // hour.
    user.setLastBackupTwoHoursAgo();
    std::filesystem::rename(user.destination(), user.path("elsewhere"));
    user.action("back-up-now");
    ASSERT_LOGGED(position, "Backup disk \"Backup Disk\" isn't mounted", 10);
    const std::string failureLine = user.log().substr(0, position);
    const std::string failedAt = failureLine.substr(failureLine.rfind('\n') + 1, 25);
    const std::string retryAt = user.shell("date -u -d '" + failedAt + " 15 minutes' '+%Y-%m-%d %H:%M:%S'");
    ASSERT_LOGGED(position, "Next backup scheduled for " + retryAt, 5);
    EXPECT_EQ(user.defaults("read org.norvane.Norvane failureStreak.v1"), "1");
    std::filesystem::rename(user.path("elsewhere"), user.destination());

    fillWithFiles(user.source() + "/large", 400, 1'000'000);
    user.action("back-up-now");
    ASSERT_LOGGED(position, "Backup started", 30);
    user.action("stop");
    ASSERT_LOGGED(position, "Backup stopped", 30);
    EXPECT_EQ(user.tmutil("latestbackup"), snapshot) << "what was stopped is no snapshot";

    const pid_t second = user.start();
    if (second > program) { // else process ids began anew, and the second takes itself for the older one
        EXPECT_EQ(user.waitForExit(second, 10), 0);
        ASSERT_LOGGED(position, "Reopened from Finder/Dock — opening Health window", 5);
    }
    EXPECT_TRUE(user.running(program));

    user.action("quit");
    EXPECT_EQ(user.waitForExit(program, 10), 0);
}

TEST(Norvane, TheUsersActionsArriveOverTheBus) {
    ProgramFixture user;
    const pid_t program = user.start();
    std::size_t position = 0;
    ASSERT_LOGGED(position, "First launch: interval timing starts now", 10);
    for (const auto& [action, line] : {std::pair{"pause-1-hour", "Paused until "},
                                       {"pause-3-hours", "Paused until "},
                                       {"pause-until-tomorrow", "Paused until "},
                                       {"resume", "Schedule resumed"},
                                       {"skip-next", "Skipping the "},
                                       {"no such action", ""}}) {
        user.action(action);
        ASSERT_LOGGED(position, line, 5);
    }
    EXPECT_TRUE(user.running(program));
    // A setting written from outside is seen, and the program's own are readable from outside.
    EXPECT_NE(user.defaults("read org.norvane.Norvane plannedFireDate.v1"), "");
}

TEST(Norvane, NothingThatIsMissingStopsIt) {
    struct Case {
        const char* what;
        std::string program = NORVANE_BIN_DIR "/norvane";
        std::vector<std::string> variables = {};
        std::string garbageInSettings = {};
        bool logs = true;
    };
    ProgramFixture tools;
    std::filesystem::create_directories(tools.path("alone/bin"));
    std::filesystem::copy(NORVANE_BIN_DIR "/norvane", tools.path("alone/bin/norvane"));
    const Case cases[] = {
        {.what = "no session bus", .variables = {"DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent"}},
        {.what = "no display", .variables = {"QT_QPA_PLATFORM=", "WAYLAND_DISPLAY=", "DISPLAY="}},
        {.what = "a display that is gone",
         .variables = {"QT_QPA_PLATFORM=", "WAYLAND_DISPLAY=", "DISPLAY=:9999"}},
        {.what = "no tools", .program = tools.path("alone/bin/norvane")},
        {.what = "no place for the log", .variables = {"XDG_STATE_HOME=/dev/null/state"}, .logs = false},
        {.what = "no place for settings", .variables = {"XDG_CONFIG_HOME=/dev/null/config"}},
        {.what = "settings of garbage", .garbageInSettings = "\xff\xfe garbage {"},
        {.what = "settings cut short", .garbageInSettings = "<?xml version=\"1.0\"?><plist><dict><key>sche"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ProgramFixture user;
        const std::string settings = user.path("config/norvane/org.norvane.Norvane.plist");
        if (!c.garbageInSettings.empty())
            std::ofstream(settings) << c.garbageInSettings;
        const pid_t program = user.start(c.program, c.variables);
        if (c.logs) {
            EXPECT_TRUE(user.waitForLog("Next backup scheduled for", 10));
        }
        EXPECT_EQ(user.waitForExit(program, 1.5), std::nullopt) << "it ended";
        if (!c.garbageInSettings.empty()) {
            EXPECT_TRUE(std::filesystem::exists(settings + ".unreadable")) << "what was there is kept aside";
        }
        kill(program, SIGTERM);
        EXPECT_EQ(user.waitForExit(program, 5), 128 + SIGTERM);
    }
}

/// A mounted file system that takes every question about what is in it, and never answers: who asks cannot
/// even be killed.
class DeadDisk {
public:
    DeadDisk() {
        std::filesystem::create_directory(path());
        std::ofstream(folder_.path("program.py")) << R"(
import stat, sys, time
from fusepy import FUSE, Operations
class Disk(Operations):
    def init(self, path):
        print('mounted', flush=True)
    def getattr(self, path, fh=None):
        if path != '/':
            print('asked for', path, flush=True)
            time.sleep(1000)
        return dict(st_mode=stat.S_IFDIR | 0o755, st_nlink=2)
FUSE(Disk(), sys.argv[1], foreground=True, attr_timeout=0, entry_timeout=0)
)";
        server_.emplace(std::vector<std::string>{"/usr/bin/python3", folder_.path("program.py"), path()});
    }
    ~DeadDisk() {
        server_->end(); // frees those who wait
        PeerProcess({"umount", "-l", path()}).waitForExit();
    }
    DeadDisk(const DeadDisk&) = delete;
    DeadDisk& operator=(const DeadDisk&) = delete;

    [[nodiscard]] std::string path() const { return folder_.path("disk"); }
    [[nodiscard]] const PeerProcess& server() const { return *server_; }

private:
    ScratchFolder folder_;
    std::optional<PeerProcess> server_;
};

/// The folder below /proc of the child that reads the desktop's entries; empty: there is none.
std::string readerOfEntries(pid_t program) {
    for (const auto& process : std::filesystem::directory_iterator("/proc")) {
        std::stringstream status;
        status << std::ifstream(process.path() / "status").rdbuf();
        if (status.str().starts_with("Name:\tdesktop-entries\n") &&
            status.str().find("PPid:\t" + std::to_string(program) + "\n") != std::string::npos)
            return process.path();
    }
    return {};
}

TEST(Norvane, APipeAmongTheApplicationsNeverHoldsIt) {
    ProgramFixture user;
    std::filesystem::create_directories(user.path("data/applications"));
    ASSERT_EQ(mkfifo(user.path("data/applications/x.desktop").c_str(), 0600), 0);
    const pid_t program = user.start(NORVANE_BIN_DIR "/norvane", {"XDG_DATA_DIRS=" + user.path("data")});
    ASSERT_TRUE(user.waitForLog("Next backup scheduled for", 10));
    std::string reader;
    EXPECT_TRUE(eventually([&] { return !(reader = readerOfEntries(program)).empty(); }));
    user.action("quit");
    EXPECT_EQ(user.waitForExit(program, 5), 0);
    EXPECT_TRUE(eventually([&] { return !std::filesystem::exists(reader + "/exe"); })) << "nobody ends it";
}

TEST(Norvane, ADeadDiskAmongTheApplicationsNeverHoldsIt) {
    if (!std::filesystem::exists("/usr/lib/python3/dist-packages/fusepy.py") ||
        !std::filesystem::exists("/dev/fuse"))
        GTEST_SKIP() << "python3-fusepy is not installed, or the kernel has no FUSE";
    const DeadDisk disk;
    ASSERT_TRUE(disk.server().waitForOutput("mounted")) << disk.server().output();
    ProgramFixture user;
    const std::string path = std::getenv("PATH");
    const pid_t program = user.start(NORVANE_BIN_DIR "/norvane", {"XDG_DATA_DIRS=" + disk.path() + "/share",
                                                                  "PATH=" + disk.path() + "/bin:" + path});
    EXPECT_TRUE(user.waitForLog("Next backup scheduled for", 10));
    EXPECT_TRUE(disk.server().waitForOutput("asked for")) << "so that its reader waits";
    user.action("quit");
    EXPECT_EQ(user.waitForExit(program, 5), 0);
}

TEST(Norvane, DoesNotRunFromADiskImage) {
    ProgramFixture user;
    const std::string folder = user.path("AppTranslocation/bin");
    std::filesystem::create_directories(folder);
    std::filesystem::copy(NORVANE_BIN_DIR "/norvane", folder + "/norvane");
    const pid_t program = user.start(folder + "/norvane"); // without a display nobody could press its button
    EXPECT_EQ(user.waitForExit(program, 10), EXIT_FAILURE);
    EXPECT_EQ(user.log(), "") << "nothing else has started";
}

TEST(Norvane, TellsOfACrashAtTheNextStart) {
    ProgramFixture user;
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer takes the signals for itself";
#endif
    const std::string sanitizerLeavesSignalsAlone = "ASAN_OPTIONS=handle_segv=0";
    const pid_t program = user.start(NORVANE_BIN_DIR "/norvane", {sanitizerLeavesSignalsAlone});
    ASSERT_TRUE(user.waitForLog("Next backup scheduled for", 10));
    syscall(SYS_tgkill, program, program, SIGSEGV); // its main thread
    EXPECT_EQ(user.waitForExit(program, 15), 128 + SIGSEGV);
    user.start();
    ASSERT_TRUE(user.waitForLog("Crash log from a previous run found: Norvane-", 10)) << user.log();
    const std::string report =
        user.shell("cat '" + user.path("state") + "'/norvane/Logs/DiagnosticReports/*.ips");
    for (const char* told : {"SIGSEGV (11), sent by another process", "Next backup scheduled for",
                             "  main + 0x", "  norvane::writeCrashReport(int, "})
        EXPECT_NE(report.find(told), std::string::npos) << told << " in\n" << report;
}

TEST(Norvane, QuitsWithoutWaitingForAToolThatHangs) {
    ProgramFixture user;
    std::filesystem::create_directories(user.path("other/bin"));
    std::filesystem::create_directories(user.path("other/libexec/norvane"));
    std::filesystem::copy(NORVANE_BIN_DIR "/norvane", user.path("other/bin/norvane"));
    const std::string tool = user.path("other/libexec/norvane/tmutil");
    const std::string called = user.path("called");
    std::ofstream(tool) << "#!/bin/sh\ntrap '' TERM\necho $$ >'" << called << "'\nexec sleep 12\n";
    std::filesystem::permissions(tool, std::filesystem::perms::owner_all);
    const pid_t program = user.start(user.path("other/bin/norvane"));
    user.shell("timeout 10 sh -c 'until test -s " + called + "; do sleep 0.05; done'");
    ASSERT_TRUE(std::filesystem::exists(called));
    const pid_t next = user.start();
    user.action("quit");
    EXPECT_EQ(user.waitForExit(program, 5), 0); // the tool's own time limit is three times as long
    EXPECT_EQ(user.shell("ps -o stat= -p $(cat " + called + ") | grep -v Z"), "") << "the tool is gone, too";
    EXPECT_EQ(user.waitForExit(next, 1), std::nullopt) << "it need not wait for the other's end";
}

} // namespace

} // namespace norvane
