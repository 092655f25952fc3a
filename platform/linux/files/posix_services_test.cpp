#include "platform/linux/files/posix_services.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

#include "platform/linux/files/small_file.h"
#include "platform/linux/files/volume_label.h"
#include "platform/linux/time/system_clock.h"
#include "platform/simulated/simulated_services.h"
#include "tests/support/test_peers.h"

namespace norvane {
namespace {

TEST(PosixLogFile, CreatesAppendsAndLosesOnlyWhatItCannotWrite) {
    const ScratchFolder folder;
    const std::string path = folder.path() + "/Norvane.log";
    PosixLogFile log(path);
    log.append("one\n");
    log.append("two\n");
    PosixLogFile(folder.path() + "/missing/Norvane.log").append("lost\n");
    PosixLogFile(folder.path()).append("a folder is no file\n");
    const std::string pipe = folder.path() + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    PosixLogFile(pipe).append("nobody reads\n");
    EXPECT_EQ(readSmallFile(path), "one\ntwo\n");

    EXPECT_EQ(log.info().size, 8U);
    EXPECT_EQ(log.read(4, 3), "two");
    EXPECT_EQ(log.read(4, 100), "two\n");
    EXPECT_EQ(log.read(9, 100), "");
    const LogFileInfo before = log.info();
    std::filesystem::rename(path, path + ".old");
    EXPECT_EQ(log.info(), LogFileInfo());
    EXPECT_EQ(log.read(0, 3), "");
    log.append("thirteen");
    EXPECT_NE(log.info(), before);
}

TEST(PosixFileSystem, TellsWhatIsThere) {
    const ScratchFolder folder;
    std::ofstream(folder.path() + "/report.ips") << "x";
    std::ofstream(folder.path() + "/.hidden") << "x";
    const PosixFileSystem files(folder.path());
    EXPECT_TRUE(files.exists(folder.path() + "/report.ips"));
    EXPECT_FALSE(files.exists(folder.path() + "/other"));
    EXPECT_GT(files.homeVolumeAvailableBytes().value_or(0), 0);
    EXPECT_EQ(PosixFileSystem("/nonexistent/home").homeVolumeAvailableBytes(), std::nullopt);
    const auto entries = files.list(folder.path());
    ASSERT_TRUE(entries && entries->size() == 1);
    EXPECT_EQ(entries->front().name, "report.ips");
    EXPECT_LT(std::abs(secondsBetween(entries->front().created.value_or(distantPast), SystemClock().now())),
              60);
    EXPECT_EQ(files.list(folder.path() + "/none"), std::nullopt);
}

TEST(PosixFileSystem, CallsAVolumeByItsLabel) {
    const ScratchFolder folder;
    const std::string device = folder.path() + "/sda1";
    std::ofstream(device) << "";
    std::filesystem::create_directory(folder.path() + "/by-label");
    std::filesystem::create_symlink("../sdb1", folder.path() + "/by-label/gone");
    EXPECT_EQ(volumeLabel(folder.path() + "/by-label", device), std::nullopt);
    std::filesystem::create_symlink("../sda1", folder.path() + "/by-label/My\\x20Disk");
    EXPECT_EQ(volumeLabel(folder.path() + "/by-label", device), "My Disk");
    EXPECT_EQ(volumeLabel(folder.path() + "/by-label", folder.path() + "/none"), std::nullopt);
    EXPECT_EQ(volumeLabel(folder.path() + "/none", device), std::nullopt);

    EXPECT_EQ(decodedLabel(R"(a\xc3\xa4\x)"), "aä\\x");
    EXPECT_EQ(decodedLabel(R"(\x2g\x5cx20)"), R"(\x2g\x20)");
    EXPECT_EQ(PosixFileSystem(folder.path()).displayName(folder.path()), folder.path()) << "no volume";
    EXPECT_NE(PosixFileSystem(folder.path()).displayName("/"), "");
}

} // namespace
} // namespace norvane
