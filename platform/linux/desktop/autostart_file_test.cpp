#include "platform/linux/desktop/autostart_file.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/support/test_peers.h"

namespace norvane {

namespace {

constexpr auto generator = "/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator";

struct AutostartFileTest : testing::Test {
    AutostartFileTest() {
        std::filesystem::create_directories(folder.path("system"));
        std::filesystem::create_directories(std::filesystem::path(program).parent_path());
        std::ofstream(program) << "#!/bin/sh\ntouch '" << folder.path("started") << "'\n";
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    }

    void writeEntry(const std::string& autostartFolder, const std::string& lines) const {
        std::filesystem::create_directories(folder.path(autostartFolder));
        std::ofstream(folder.path(autostartFolder + "/org.norvane.Norvane.desktop"))
            << "[Desktop Entry]\nType=Application\nName=Norvane\n"
            << lines;
    }

    /// The unit that a real session manager makes of the user's folder; empty: it starts nothing.
    [[nodiscard]] std::string generatedUnit() const {
        const ScratchFolder units;
        PeerProcess process({generator, units.path(), units.path(), units.path()},
                            {"XDG_CONFIG_HOME=" + folder.path("config"), "XDG_CONFIG_DIRS=/nonexistent"});
        process.waitForExit();
        std::ifstream unit(units.path("app-org.norvane.Norvane@autostart.service"));
        return {std::istreambuf_iterator<char>(unit), {}};
    }

    [[nodiscard]] std::string set(bool enable) {
        std::string error = "not called";
        const auto done = [&](const std::string& text) { error = text; };
        enable ? item.enable(done) : item.disable(done);
        return error;
    }

    ScratchFolder folder;
    const std::string program = folder.path("program folder/norvane");
    const std::string entry = folder.path("config/autostart/org.norvane.Norvane.desktop");
    AutostartFile item{{folder.path("config/autostart"), {folder.path("missing"), folder.path("system")}},
                       program};
};

TEST_F(AutostartFileTest, RealSessionsStartWhatWasRegistered) {
    std::filesystem::create_directories(folder.path("config/autostart"));
    ASSERT_EQ(mkfifo(entry.c_str(), 0600), 0);
    EXPECT_FALSE(item.enabled()) << "a pipe that nobody writes to";
    EXPECT_EQ(set(false), "");
    EXPECT_EQ(set(false), "") << "nothing to remove";
    EXPECT_EQ(set(true), "");
    EXPECT_TRUE(item.enabled());
    if (installed("desktop-file-validate")) {
        PeerProcess validator({"desktop-file-validate", entry});
        EXPECT_EQ(validator.waitForExit(), 0);
        EXPECT_EQ(validator.output(), "");
    }
    if (std::filesystem::exists(generator)) {
        EXPECT_NE(generatedUnit().find("ExecStart=:\"" + program + "\""), std::string::npos);
    }
    if (installed("dex")) {
        PeerProcess dex({"dex", "-a", "-s", folder.path("config/autostart")});
        EXPECT_TRUE(eventually([this] { return std::filesystem::exists(folder.path("started")); }))
            << dex.output();
    }
    EXPECT_EQ(set(false), "");
    EXPECT_FALSE(item.enabled());
    EXPECT_FALSE(std::filesystem::exists(entry));
}

TEST_F(AutostartFileTest, AnyPathIsQuoted) {
    const std::string hostile = folder.path("a $1 \"b\" `c` d");
    std::filesystem::copy(program, hostile);
    AutostartFile other{{folder.path("config/autostart"), {}}, hostile};
    other.enable([](const std::string& error) { EXPECT_EQ(error, ""); });
    EXPECT_TRUE(other.enabled());
    if (std::filesystem::exists(generator)) {
        EXPECT_NE(generatedUnit().find(R"(/a \$1 \"b\" \`c\` d")"), std::string::npos) << generatedUnit();
    }
}

TEST_F(AutostartFileTest, WhatNoSessionWouldStartIsRefused) {
    const std::string hostile = folder.path("100% sure");
    std::filesystem::copy(program, hostile);
    AutostartFile other{{folder.path("config/autostart"), {}}, hostile};
    std::string text;
    other.enable([&](const std::string& error) { text = error; });
    EXPECT_NE(text.find('%'), std::string::npos) << text;
    EXPECT_FALSE(other.enabled());
}

TEST_F(AutostartFileTest, StatusIsWhatASessionMakesOfTheEntry) {
    struct Case {
        const char* lines;
        bool enabled;
        bool sessionAgrees = true;
    };
    const Case cases[] = {
        {"Exec=true\n", true},
        {"Exec=true\nHidden=false\nX-GNOME-Autostart-enabled=true\n", true},
        {"Exec=true\nHidden=true\n", false},
        {"Exec=true\nX-GNOME-Autostart-enabled=false\n", false, false},
        {"Exec=true\nTryExec=/nonexistent/program\n", false},
        {"Exec=/nonexistent/program\n", false, false},
        {"Exec=true\nOnlyShowIn=Another;\n", false, false},
        {"Exec=true\nOnlyShowIn=Another;Demo;\n", true, false},
        {"Exec=true\nNotShowIn=Demo;\n", false, false},
        {"Exec=\"unfinished\n", false},
        {"\xff garbage", false},
        {"", false},
    };
    setenv("XDG_CURRENT_DESKTOP", "Special:Demo", 1);
    for (const Case& c : cases) {
        writeEntry("config/autostart", c.lines);
        EXPECT_EQ(item.enabled(), c.enabled) << c.lines;
        if (c.sessionAgrees && std::filesystem::exists(generator)) {
            EXPECT_EQ(!generatedUnit().empty(), c.enabled) << c.lines;
        }
    }
}

TEST_F(AutostartFileTest, AnEntryOfTheSystemIsMasked) {
    writeEntry("system", "Exec=true\n");
    EXPECT_TRUE(item.enabled());
    EXPECT_EQ(set(false), "");
    EXPECT_FALSE(item.enabled());
    EXPECT_TRUE(std::filesystem::exists(folder.path("system/org.norvane.Norvane.desktop")));
    EXPECT_EQ(set(true), "");
    EXPECT_TRUE(item.enabled());
}

TEST_F(AutostartFileTest, AFolderThatRefusesIsReported) {
    std::ofstream(folder.path("config")) << "a file where the folder should be";
    for (const bool enable : {true, false}) {
        const std::string error = set(enable);
        EXPECT_EQ(error, "Couldn't change your login items: “" + folder.path("config/autostart") +
                             "” should be a folder, but is not.");
    }
    EXPECT_FALSE(item.enabled());
}

} // namespace

} // namespace norvane
