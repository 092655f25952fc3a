#include "platform/linux/processes/program_place.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <utility>

namespace norvane {

namespace {

TEST(DiskImage, IsToldByPlaceAndMount) {
    constexpr std::int64_t ext4 = 0xEF53;
    constexpr std::int64_t iso = 0x9660;
    const std::pair<ProgramPlace, bool> cases[] = {
        {{"/usr/bin/norvane", false, ext4, true, "/dev/sda1"}, false},
        {{"/home/ada/Norvane.AppImage", true, ext4}, false},
        {{"/run/media/ada/STICK/Norvane.AppImage", true, iso, true}, false},
        {{"/Volumes/Norvane/norvane", false, ext4}, true},
        {{"/Volumes/Norvane/Norvane.AppImage", true, ext4}, true},
        {{"/Volumes", false, ext4}, false},
        {{"/private/AppTranslocation/1/norvane", false, ext4}, true},
        {{"/home/AppTranslocation", false, ext4}, false},
        {{"/media/ada/DATA/norvane", false, ext4, false, "/dev/sdb1"}, false},
        {{"/media/ada/STICK/norvane", false, ext4, true, "/dev/sdb1"}, true},
        {{"/run/media/ada/IMAGE/norvane", false, ext4, false, "/dev/loop0"}, true},
        {{"/snap/norvane/1/norvane", false, 0x73717368, true, "/dev/loop3"}, false},
        {{"/home/ada/mnt/norvane", false, iso}, true},
        {{"/home/ada/mnt/norvane", false, 0x15013346}, true},
        {{""}, false},
    };
    for (const auto& [place, expected] : cases)
        EXPECT_EQ(isOnDiskImage(place), expected) << place.path;
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
