#include "platform/linux/applications/running_applications.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/linux/applications/application_identity.h"
#include "platform/linux/processes/child_command_runner.h"
#include "platform/simulated/simulated_time.h"
#include "tests/support/test_peers.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;
using Ids = std::set<std::string>;
using namespace std::string_literals;

TEST(ApplicationIdentity, OfControlGroups) {
    struct Case {
        std::string unit;
        std::optional<std::string> id;
    };
    const Case cases[] = {
        {R"(app.slice/app-gnome-firefox\x2desr-2211.scope)", "firefox-esr"},
        {"app.slice/app-flatpak-org.mozilla.firefox-1234.scope", "org.mozilla.firefox"},
        {"app.slice/app-org.kde.dolphin@8f2.service", "org.kde.dolphin"},
        {R"(app.slice/app-gnome-org.norvane.Norvane@autostart.service)", "org.norvane.Norvane"},
        {"app.slice/app-org.kde.kate-77.scope", "org.kde.kate"},
        {"snap.firefox.firefox-0aa1b2c3-0000-4111-8222-123456789abc.scope", "firefox_firefox"},
        {"snap.lxd.lxc.0aa1b2c3-0000-4111-8222-123456789abc.scope", "lxd_lxc"},
        {"app-org.gnome.Terminal.slice/vte-spawn-12-34.scope", std::nullopt},
        {"session-2.scope", std::nullopt},
        {"app-.scope", std::nullopt},
        {"app--1.scope", std::nullopt},
        {R"(app-a\x2-1.scope)", R"(a\x2)"},
        {"", std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(applicationOfControlGroup("0::/user.slice/" + c.unit + "\n"), c.id) << c.unit;
        EXPECT_EQ(applicationOfControlGroup("4:cpu:/\n1:name=systemd:/x/" + c.unit + "\n"), c.id) << c.unit;
    }
}

/// What the table's processes look like in /proc.
struct Process {
    const char* what;
    std::string executable;
    std::string arguments; // each ends with a zero
    std::string environment;
    std::string flatpakInfo;
    Ids expected;
};

TEST(RunningApplications, AreTheUnionOfAllTraces) {
    const std::vector<DesktopEntry> entries = {{"editor", "/opt/editor/bin/editor"},
                                               {"editor-safe", "/opt/editor/bin/editor"},
                                               {"script", "/opt/script.py"},
                                               {"without a program of its own", ""}};
    const std::string note = "A=1\0GIO_LAUNCHED_DESKTOP_FILE=/x/applications/kde/viewer.desktop\0"s +
                             "GIO_LAUNCHED_DESKTOP_FILE_PID="s;
    const std::string viewer = "/opt/viewer\0"s;
    const Process cases[] = {
        {"by its program", "/opt/editor/bin/editor", "editor\0"s, "", "", {"editor", "editor-safe"}},
        {"updated meanwhile", "/opt/editor/bin/editor (deleted)", "x\0"s, "", "", {"editor", "editor-safe"}},
        {"by how it was called",
         "/opt/editor/real",
         "/opt/editor/bin/editor\0a\0"s,
         "",
         "",
         {"editor", "editor-safe"}},
        {"a script", "/usr/bin/python3.11", "python3\0/opt/script.py\0"s, "", "", {"script"}},
        {"a file being edited", "/usr/bin/vi", "vi\0/opt/script.py\0"s, "", "", {}},
        {"a shell", "/usr/bin/dash", "sh\0-c\0editor\0"s, "", "", {}},
        {"launched", "/opt/viewer", viewer, note + "4711\0"s, "", {"kde-viewer"}},
        {"started by a launched one", "/opt/viewer", viewer, note + "4710\0"s, "", {}},
        {"in a Flatpak",
         "/app/bin/x",
         "x\0"s,
         "",
         "[Instance]\nname=no\n[Application]\nname=org.x.Y\n",
         {"org.x.Y"}},
        {"without arguments", "/opt/editor/bin/editor", "", "", "", {"editor", "editor-safe"}},
    };
    for (const Process& c : cases) {
        const ScratchFolder proc;
        const std::string folder = proc.path("4711");
        fs::create_directories(folder + "/root");
        fs::create_symlink(c.executable, folder + "/exe");
        std::ofstream(folder + "/cmdline") << c.arguments;
        std::ofstream(folder + "/environ") << c.environment;
        if (!c.flatpakInfo.empty())
            std::ofstream(folder + "/root/.flatpak-info") << c.flatpakInfo;
        const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
        RunningApplications running;
        for (const char* look : {"first", "second", "third"})
            EXPECT_EQ(running.now(proc.path(), entries, "/usr/bin", end), c.expected) << c.what << look;
        EXPECT_EQ(running.now(proc.path(), entries, "/usr/bin", {}), Ids{}) << "no time left";
    }
}

TEST(DesktopEntries, StayAsTheyAreWhenTheyCannotBeRead) {
    struct Reader final : CommandRunner {
        std::optional<CommandResult> result;
        std::optional<CommandResult> run(const std::string&, const std::vector<std::string>&,
                                         double) const override {
            return result;
        }
    };
    SimulatedTime background{Instant()};
    const std::string good = textOfEntries({{.id = "a\xff", .program = "/a"}});
    Reader reader;
    reader.result = CommandResult{0, good, ""};
    DesktopEntries entries(background, reader, "/reader");
    background.settle();
    const std::optional<CommandResult> failures[] = {
        std::nullopt,
        CommandResult{15, textOfEntries({}), ""},
        CommandResult{0, "", ""},
        CommandResult{0, "{}", ""},
        CommandResult{0, "[{}]", ""},
        CommandResult{0, good.substr(0, good.size() - 1), ""},
        CommandResult{0, R"([{"id":1,"program":"","name":"","icon":"","shown":true}])", ""},
    };
    for (const auto& failure : failures) {
        reader.result = failure;
        bool told = false;
        entries.refresh([&] { told = true; });
        background.settle();
        EXPECT_TRUE(told);
        ASSERT_EQ(entries.known().size(), 1U) << (failure ? failure->stdout : "not started");
        EXPECT_EQ(entries.known().front().id, "a\uFFFD");
    }
}

TEST(RunningApplications, AreSeenInTheRealProcessesAndEntries) {
    const ScratchFolder folder;
    fs::create_directories(folder.path("applications/sub"));
    fs::create_directories(folder.path("no-programs/demo-app"));
    const std::string program = folder.path("demo-app");
    fs::copy_file("/usr/bin/sleep", program);
    const auto entry = [&](const std::string& file, const std::string& rest) {
        std::ofstream(folder.path("applications/" + file)) << "[Desktop Entry]\nType=Application\nName=Demo\n"
                                                           << rest;
    };
    entry("org.demo.App.desktop", "NoDisplay=true\nExec=demo-app %u\n");
    entry("sub/other.desktop", "Exec=\"" + program + "\"\nTryExec=/nonexistent\n");
    entry("hidden.desktop", "Hidden=true\nExec=" + program + "\n");
    entry("torn.desktop", "Exec");
    entry("shell.desktop", "Exec=sh -c demo-app\n");
    setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
    setenv("XDG_DATA_DIRS", "/nonexistent", 1);
    const std::string searchPath = folder.path("no-programs:") + folder.path() + ":/usr/bin";
    setenv("PATH", searchPath.c_str(), 1);
    SimulatedTime background{Instant()};
    const ChildCommandRunner runner;
    DesktopEntries entries(background, runner, NORVANE_LIBEXEC_DIR "/desktop-entries");
    RunningApplications applications;
    const auto running = [&] {
        background.settle();
        entries.refresh();
        return applications.now("/proc", entries.known(), searchPath,
                                std::chrono::steady_clock::now() + std::chrono::minutes(1));
    };
    EXPECT_TRUE(entries.known().empty());
    int told = 0;
    for (int i = 0; i < 2; ++i)
        entries.refresh([&] { ++told; }); // together with the reading that goes on
    EXPECT_FALSE(running().contains("org.demo.App"));
    EXPECT_EQ(told, 2);
    std::map<std::string, std::string> programs;
    for (const DesktopEntry& known : entries.known())
        programs.emplace(known.id, known.program);
    EXPECT_EQ(programs, (std::map<std::string, std::string>{{"org.demo.App", program}, {"shell", ""}}));
    {
        const PeerProcess demo({program, "100"});
        EXPECT_TRUE(eventually([&] { return running().contains("org.demo.App"); }));
        EXPECT_FALSE(running().contains("sub-other")) << "its TryExec is not there";
        entry("sub/other.desktop", "Exec=\"" + program + "\"\n");
        EXPECT_TRUE(eventually([&] { return running().contains("sub-other"); })) << "rewritten in place";
    }
    EXPECT_FALSE(running().contains("org.demo.App"));
}

TEST(RunningApplications, AreSeenInARealSandbox) {
    const ScratchFolder root;
    std::ofstream(root.path(".flatpak-info")) << "[Application]\nname=org.demo.Boxed\n";
    std::vector<std::string> words = {"/usr/bin/python3", "-c",
                                      "import os, sys, time\n"
                                      "os.chroot(sys.argv[1])\n"
                                      "print('inside', flush=True)\n"
                                      "time.sleep(100)",
                                      root.path()};
    if (geteuid() != 0)
        words.insert(words.begin(), {"unshare", "-r"});
    const PeerProcess boxed(words);
    if (!boxed.waitForOutput("inside"))
        GTEST_SKIP() << "this user may not change the root of a process: " << boxed.output();
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    EXPECT_TRUE(RunningApplications().now("/proc", {}, "/usr/bin", end).contains("org.demo.Boxed"));
}

} // namespace

} // namespace norvane
