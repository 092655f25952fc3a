#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "platform/linux/files/posix_services.h"
#include "platform/linux/files/program_search.h"
#include "tests/support/test_peers.h"

namespace norvane {

namespace {

/// A file system with one folder, "backups".
constexpr auto fileSystemProgram = R"(
import errno, stat, sys
from fusepy import FUSE, FuseOSError, Operations
class Disk(Operations):
    def getattr(self, path, fh=None):
        if path not in ('/', '/backups'):
            raise FuseOSError(errno.ENOENT)
        return dict(st_mode=stat.S_IFDIR | 0o755, st_nlink=2)
FUSE(Disk(), sys.argv[1], foreground=True, attr_timeout=0, entry_timeout=0)
)";

TEST(PosixFileSystem, DoesNotWaitForADeadMount) {
    if (!std::filesystem::exists("/usr/lib/python3/dist-packages/fusepy.py") ||
        !std::filesystem::exists("/dev/fuse"))
        GTEST_SKIP() << "python3-fusepy is not installed, or the kernel has no FUSE";
    const ScratchFolder folder;
    const std::string mount = folder.path("disk");
    std::filesystem::create_directory(mount);
    std::ofstream(folder.path("program.py")) << fileSystemProgram;
    const PosixFileSystem files("/");
    EXPECT_NE(files.mountPointOf(mount), mount);
    const PeerProcess server({"/usr/bin/python3", folder.path("program.py"), mount});
    ASSERT_TRUE(eventually([&] { return files.mountPointOf(mount) == mount; })) << server.output();
    EXPECT_TRUE(files.exists(mount));
    EXPECT_TRUE(files.exists(mount + "/backups"));
    EXPECT_FALSE(files.exists(mount + "/other's \"folder\""));
    server.freeze();
    // Ends the wait of a test that fails: nothing else could, as long as the server does not answer.
    const PeerProcess rescue({"sh", "-c", "sleep 5; kill -CONT " + std::to_string(server.id())});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(files.exists(mount));
    EXPECT_TRUE(files.exists(mount + "/other")) << "unanswered";
    EXPECT_EQ(files.mountPointOf(mount + "/backups"), mount);
    std::filesystem::create_directory(folder.path("bin"));
    std::filesystem::create_symlink("../disk/program", folder.path("bin/program"));
    std::filesystem::create_symlink(mount, folder.path("link"));
    ProgramSearch programs(folder.path("link/backups:") + folder.path("bin:/usr/bin"),
                           ProgramSearch::Reach::prompt);
    EXPECT_TRUE(programs.leavesOut());
    EXPECT_TRUE(programs.has("env")) << "in the folder behind the dead one";
    EXPECT_FALSE(programs.has("/usr/bin/no-such-program"));
    EXPECT_FALSE(programs.has("no-such-program"));
    EXPECT_FALSE(programs.has(""));
    for (const char* path : {"disk/program", "link/program", "bin/program", "bin/./../link/program"})
        EXPECT_EQ(programs.file(folder.path(path)), mount + "/program") << path;
    EXPECT_EQ(programs.file("program"), mount + "/program");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    server.goOn();
    EXPECT_FALSE(files.exists(mount + "/other")) << "it answers again";
    EXPECT_EQ(PeerProcess({"umount", mount}).waitForExit(), 0);
    EXPECT_NE(files.mountPointOf(mount), mount);
    EXPECT_TRUE(files.exists(mount)) << "the empty mount point stays";
}

} // namespace

} // namespace norvane
