#include "platform/linux/files/mount_table.h"

#include <gtest/gtest.h>

namespace norvane {

namespace {

TEST(MountTable, FindsMountsAndTellsTheirAddresses) {
    const std::string table =
        "22 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
        "30 22 0:40 / /mnt/my\\040nas rw shared:5 master:2 - cifs //nas.local/Time\\040Machine rw\n"
        "31 22 0:41 / /mnt/nfs rw - nfs4 server:/export/b rw\n"
        "32 22 0:42 / /mnt/v6 rw - nfs [fe80::1]:/b rw\n"
        "33 22 0:43 /sub /mnt/sub rw - cifs //nas/share rw\n"
        "34 22 0:44 / /mnt/ssh rw - fuse.sshfs me@host:backups rw\n"
        "35 22 0:45 / /mnt/host rw - 9p hostshare rw\n"
        "torn line\n36";
    struct Case {
        std::uint64_t id;
        const char* path;
        bool network;
        std::optional<std::string> url;
    };
    const Case cases[] = {
        {22, "/", false, std::nullopt},
        {30, "/mnt/my nas", true, "smb://nas.local/Time%20Machine"},
        {30, "/mnt/my nas/a b", true, "smb://nas.local/Time%20Machine/a%20b"},
        {31, "/mnt/nfs/x", true, "nfs://server/export/b/x"},
        {32, "/mnt/v6", true, "nfs://[fe80::1]/b"},
        {33, "/mnt/sub/x", true, "smb://nas/share/sub/x"},
        {34, "/mnt/ssh", true, "sftp://me@host/backups"},
        {35, "/mnt/host/x", true, std::nullopt},
    };
    for (const Case& c : cases) {
        const auto mount = findMount(table, c.id);
        ASSERT_TRUE(mount) << c.id;
        EXPECT_EQ(isNetworkFileSystem(mount->type), c.network) << c.id;
        EXPECT_EQ(networkUrl(*mount, c.path), c.url) << c.path;
    }
    EXPECT_EQ(mountFolders(table).at(2), "/mnt/my nas");
    EXPECT_EQ(mountHolding(table, "/mnt/sub/x")->id, 33U);
    EXPECT_EQ(mountHolding(table, "/mnt/submarine")->id, 22U);
    EXPECT_FALSE(mountHolding("", "/mnt"));
    EXPECT_FALSE(findMount(table, 36));
    EXPECT_FALSE(findMount("", 1));
}

} // namespace

} // namespace norvane
