#include "timemachine_linux/destination/backup_drives.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

TEST(BackupDrives, AreWhatAPersonCallsADrive) {
    const std::string table = "20 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
                              "21 20 8:1 / /boot/efi rw - vfat /dev/sda1 rw\n"
                              "22 20 0:5 / /proc rw - proc proc rw\n"
                              "23 20 0:6 / /run rw - tmpfs tmpfs rw\n"
                              "24 20 8:3 / /home rw - ext4 /dev/sda3 rw\n"
                              "25 20 8:4 / /srv/archive rw - xfs /dev/sda4 rw\n"
                              "26 20 7:0 / /snap/core/1 ro - squashfs /dev/loop0 ro\n"
                              "27 23 8:17 / /run/media/anna/My\\040Disk rw - ext4 /dev/sdb1 rw\n"
                              "28 20 8:33 / /media/anna/STICK rw - vfat /dev/sdc1 rw\n"
                              "29 20 11:0 / /media/anna/DVD ro - udf /dev/sr0 ro\n"
                              "30 20 0:50 / /mnt/nas rw - cifs //nas/backups rw\n"
                              "31 20 0:51 /@backups /mnt/pool rw - btrfs /dev/sdd1 rw\n"
                              "32 20 8:2 /usr /srv/again rw - ext4 /dev/sda2 rw\n"
                              "33 24 0:52 / /home/anna/phone rw - fuse.sshfs phone: rw\n"
                              "34 24 8:49 / /home/anna/inner rw - ext4 /dev/sde1 rw\n"
                              "35 20 8:65 / /media/anna/old rw - ext4 /dev/sdf1 rw\n"
                              "36 35 0:60 / /media/anna/old rw - tmpfs tmpfs rw\n";
    std::vector<std::string> folders;
    for (const Mount& drive : backupDrives(table, "/home/anna"))
        folders.push_back(drive.folder);
    EXPECT_EQ(folders, (std::vector<std::string>{"/media/anna/STICK", "/mnt/nas", "/mnt/pool",
                                                 "/run/media/anna/My Disk", "/home/anna/inner",
                                                 "/home/anna/phone", "/srv/archive"}));
    EXPECT_TRUE(backupDrives("", "/home/anna").empty());
}

} // namespace

} // namespace norvane
