#include <gtest/gtest.h>

#include "timemachine/tm_util.h"

namespace norvane {

namespace {

TEST(InfoValue, ReadsLabelledLines) {
    const std::string text = "====================\n"
                             "Name          : Backup Disk\n"
                             "Names         : other\n"
                             "Kind          : Local\n"
                             "\tMount Point\t:  /Volumes/Backup Disk \t\n"
                             "Empty         :   \n"
                             "Bare          :\n"
                             "Bare          : later\n"
                             "Empty         : never read\n"
                             "::Colons      : skipped\n"
                             "URL           : afp://nas.local:548/Backups\n"
                             "Name          : second";
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"Name", "Backup Disk"},
        {"Kind", "Local"},
        {"Mount Point", "/Volumes/Backup Disk"},
        {"Empty", std::nullopt},
        {"Bare", "later"},
        {"Colons", "skipped"},
        {"URL", "afp://nas.local:548/Backups"},
        {"name", std::nullopt},
        {"Missing", std::nullopt}};
    for (const auto& [key, value] : cases)
        EXPECT_EQ(TMUtil::infoValue(key, text), value) << key;
    EXPECT_EQ(TMUtil::infoValue("Name", ""), std::nullopt);
}

TEST(Endpoints, OfADestinationUrl) {
    using Endpoints = std::vector<NetworkEndpoint>;
    const auto hosts = [](const char* host, std::uint16_t first, std::uint16_t second) {
        return Endpoints{HostEndpoint{host, first}, HostEndpoint{host, second}};
    };
    const std::pair<const char*, Endpoints> cases[] = {
        {"smb://nas.local/TM", hosts("nas.local", 445, 548)},
        {"smb://user@home;x:pw@nas.local:4450/TM", hosts("nas.local", 445, 548)},
        {"sftp://nas.local/TM", hosts("nas.local", 548, 445)},
        {"SMB://nas.local/TM", hosts("nas.local", 548, 445)},
        {"smb://[fe80::1]/TM", hosts("fe80::1", 445, 548)},
        {"smb://Office%20NAS._smb._tcp.local./TM", {ServiceEndpoint{"Office NAS", "_smb._tcp", "local"}}},
        {"smb://a._smb._tcp.b._afpovertcp._tcp.local/TM",
         {ServiceEndpoint{"a._smb._tcp.b", "_afpovertcp._tcp", "local"}}},
        {"afp://._smb._tcp.local/TM", hosts("._smb._tcp.local", 548, 445)},
        {"smb:///TM", {}},
        {"/Volumes/TM", {}},
        {"", {}},
        {"://host", {}},
        {"smb://bad%zz%41", hosts("bad%zzA", 445, 548)},
    };
    for (const auto& [url, expected] : cases)
        EXPECT_EQ(TMUtil::endpoints(url), expected) << url;
}

TEST(DestinationStatuses, KeepWhatIsWellFormed) {
    const std::string text = R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>
<key>Destinations</key><array>
<dict><key>SnapshotDates</key><array><date>2026-03-05T10:00:00Z</date><date>2026-03-04T10:00:00Z</date></array>
<key>AttemptDates</key><array><date>2026-03-05T09:50:00Z</date></array>
<key>BytesAvailable</key><integer>100</integer><key>BytesUsed</key><real>200</real><key>RESULT</key><real>19.7</real>
<key>MessageParameters</key><array><string>a</string><integer>1</integer><string>b</string></array></dict>
<dict><key>SnapshotDates</key><array><date>2026-03-05T10:00:00Z</date><string>x</string></array>
<key>BytesAvailable</key><integer>18446744073709551615</integer><key>BytesUsed</key><real>0.5</real>
<key>RESULT</key><string>0</string><key>MessageParameters</key><string>a</string></dict>
</array></dict></plist>)";
    const Instant ten = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} + std::chrono::hours{10};
    const TMUtil::DestinationStatus whole{
        {ten, ten - std::chrono::hours{24}}, {ten - std::chrono::minutes{10}}, 100, 200, 19, {"a", "b"}};
    EXPECT_EQ(TMUtil::parseDestinationStatuses(text), (std::vector<TMUtil::DestinationStatus>{whole, {}}));
}

TEST(DestinationStatuses, AreEmptyWhereTheWholeIsUnusable) {
    for (const char* text :
         {"", "garbage", "<plist><array/></plist>", "<plist><dict/></plist>",
          "<plist><dict><key>Destinations</key><string>x</string></dict></plist>",
          "<plist><dict><key>Destinations</key><array><dict/><string>x</string></array></dict></plist>"})
        EXPECT_TRUE(TMUtil::parseDestinationStatuses(text).empty()) << text;
}

} // namespace

} // namespace norvane
