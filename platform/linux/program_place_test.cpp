#include "platform/linux/program_place.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace norvane {
namespace {

TEST(DiskImage, IsToldByPathAndFileSystem) {
    struct Case {
        const char* path;
        std::int64_t magic;
        bool expected;
    };
    constexpr std::int64_t ext4 = 0xEF53;
    const Case cases[] = {
        {"/usr/bin/norvane", ext4, false},
        {"/home/ada/Applications/Norvane.AppImage", ext4, false},
        {"/Volumes/Norvane/norvane", ext4, true},
        {"/Volumes", ext4, false},
        {"/private/AppTranslocation/1/norvane", ext4, true},
        {"/home/AppTranslocation", ext4, false},
        {"/media/ada/STICK/norvane", ext4, true},
        {"/mediafiles/norvane", ext4, false},
        {"/run/media/ada/STICK/norvane", 0, true},
        {"/home/ada/mnt/norvane", 0x9660, true},
        {"/home/ada/mnt/norvane", 0x15013346, true},
        {"", 0, false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(isOnDiskImage(c.path, c.magic), c.expected) << c.path;
    EXPECT_FALSE(runsFromDiskImage());
}

TEST(ProgramPath, IsTheAppImageOnlyForAProgramInside) {
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(programPath(), self);
    setenv("APPIMAGE", "/home/ada/Other.AppImage", 1);
    setenv("APPDIR", "/tmp/.mount_Other", 1);
    EXPECT_EQ(programPath(), self) << "handed down by another program";
    setenv("APPDIR", std::filesystem::path(self).parent_path().c_str(), 1);
    EXPECT_EQ(programPath(), "/home/ada/Other.AppImage");
}

} // namespace
} // namespace norvane
