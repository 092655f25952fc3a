#include "timemachine_linux/defaults/defaults_command.h"

#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/files/user_defaults_file.h"
#include "platform/linux/files/user_folders.h"
#include "platform/text/property_list_xml.h"

namespace norvane {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using Arguments = std::vector<std::string>;

struct Outcome {
    int exitCode = 0;
    std::string out;
    std::string err;

    bool operator==(const Outcome&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << outcome.exitCode << "\nout: " << outcome.out << "\nerr: " << outcome.err;
}

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

class DefaultsTest : public testing::Test {
protected:
    DefaultsTest() {
        std::string pattern = testing::TempDir() + "/defaultsXXXXXX";
        folder_ = ::mkdtemp(pattern.data());
        ::setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    }
    ~DefaultsTest() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    static Outcome run(const Arguments& arguments, const std::string& input = "") {
        std::istringstream in(input);
        std::ostringstream out;
        std::ostringstream err;
        const int exitCode = runDefaults({arguments, "NOW "}, in, out, err);
        return {exitCode, out.str(), err.str()};
    }

    /// The program itself. Its outputs go to files, so that nothing has to be read while it runs.
    [[nodiscard]] pid_t start(Arguments arguments, const std::string& outputs) const {
        arguments.insert(arguments.begin(), NORVANE_LIBEXEC_DIR "/defaults");
        std::vector<char*> pointers;
        for (std::string& argument : arguments)
            pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 1, (outputs + ".out").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        posix_spawn_file_actions_addopen(&actions, 2, (outputs + ".err").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        pid_t child = -1;
        const int error = ::posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        EXPECT_EQ(error, 0);
        return child;
    }

    std::string folder_;
};

TEST_F(DefaultsTest, WritesAndReadsEveryType) {
    struct Case {
        Arguments value;
        std::string printed;
        PropertyList stored;
    };
    const Instant date(std::chrono::seconds(1714558500));
    const std::vector<Case> cases = {
        {{"plain text"}, "plain text", {"plain text"s}},
        {{"-string", "{ä"}, "{ä", {"{ä"s}},
        {{"-int", "-12"}, "-12", {std::int64_t{-12}}},
        {{"-float", "0.25"}, "0.25", {0.25}},
        {{"-bool", "YES"}, "1", {true}},
        {{"-boolean", "false"}, "0", {false}},
        {{"-date", "2024-05-01T10:15:00Z"}, "2024-05-01 10:15:00 +0000", {date}},
        {{"-date", "2024-05-01 10:15:00 +0000"}, "2024-05-01 10:15:00 +0000", {date}},
        {{"-data", "00ff10a1b2"}, "<00ff10a1 b2>", {PropertyListData{"\0\xFF\x10\xA1\xB2"s}}},
        {{"-array", "a", "-int", "1"},
         "(\n    a,\n    1\n)",
         {PropertyList::Array{{"a"s}, {std::int64_t{1}}}}},
        {{"-array"}, "(\n)", {PropertyList::Array{}}},
        {{"-dict", "k", "-bool", "no"}, "{\n    k = 0;\n}", {PropertyList::Dictionary{{"k", {false}}}}},
        {{"{ k = (v); }"},
         "{\n    k =     (\n        v\n    );\n}",
         {PropertyList::Dictionary{{"k", {PropertyList::Array{{"v"s}}}}}}},
        {{"<dict><key>k</key><true/></dict>"}, "{\n    k = 1;\n}", {PropertyList::Dictionary{{"k", {true}}}}},
    };
    const UserDefaultsFile store(preferencesFile("org.example"));
    for (const auto& [value, printed, stored] : cases) {
        Arguments write = {"write", "org.example", "key"};
        write.insert(write.end(), value.begin(), value.end());
        EXPECT_EQ(run(write), Outcome{}) << printed;
        EXPECT_EQ(store.object("key"), stored) << printed;
        EXPECT_EQ(run({"read", "org.example", "key"}), (Outcome{0, printed + "\n", ""}));
    }
}

TEST_F(DefaultsTest, AddsToArrays) {
    EXPECT_EQ(run({"write", "d", "list", "-array-add", "a"}), Outcome{});
    EXPECT_EQ(run({"write", "d", "list", "-array-add", "b", "c"}), Outcome{});
    EXPECT_EQ(run({"read", "d", "list"}).out, "(\n    a,\n    b,\n    c\n)\n");
    run({"write", "d", "text", ""});
    EXPECT_EQ(run({"write", "d", "text", "-array-add", "b"}).exitCode, 1);
    EXPECT_EQ(run({"read", "d", "text"}).out, "\n");
}

TEST_F(DefaultsTest, RefusesBadValuesWithoutWriting) {
    for (const Arguments& value : std::vector<Arguments>{{"-int", "12x"},
                                                         {"-int"},
                                                         {"-int", "1", "2"},
                                                         {"a", "b"},
                                                         {"-float", "x"},
                                                         {"-bool", "maybe"},
                                                         {"-date", "yesterday"},
                                                         {"-data", "0g"},
                                                         {"-data", "0"},
                                                         {"-array", "-int", "x"},
                                                         {"-dict", "k"},
                                                         {"{ k = "},
                                                         {"<dict>"},
                                                         {"\xFF"}}) {
        Arguments write = {"write", "d", "key"};
        write.insert(write.end(), value.begin(), value.end());
        const Outcome outcome = run(write);
        EXPECT_EQ(outcome.exitCode, 1) << value.front();
        EXPECT_FALSE(outcome.err.empty());
        EXPECT_FALSE(fs::exists(preferencesFile("d"))) << value.front();
    }
    EXPECT_EQ(run({"write", "d", "(a)"}).err,
              "Rep argument is not a dictionary\nDefaults have not been changed.\n");
    for (const Arguments& call :
         std::vector<Arguments>{{}, {"reed"}, {"read", "d", "k", "x"}, {"write", "d"}})
        EXPECT_EQ(run(call).exitCode, 255);
    EXPECT_EQ(run({"help"}).exitCode, 0);
}

TEST_F(DefaultsTest, SaysWhatIsMissing) {
    EXPECT_EQ(run({"read", "nope"}), (Outcome{1, "", "NOW \nDomain nope does not exist\n"}));
    EXPECT_EQ(run({"delete", "nope"}).exitCode, 1);
    run({"write", "d", "{ a = 1; b = 2; }"});
    const std::string missing = "NOW \nThe domain/default pair of (d, c) does not exist\n";
    EXPECT_EQ(run({"read", "d", "c"}), (Outcome{1, "", missing}));
    EXPECT_EQ(run({"delete", "d", "a"}), Outcome{});
    EXPECT_EQ(run({"read", "d"}), (Outcome{0, "{\n    b = 2;\n}\n", ""}));
    EXPECT_EQ(run({"delete", "d"}), Outcome{});
    EXPECT_EQ(run({"read", "d"}).exitCode, 1);
    EXPECT_EQ(run({"domains"}).out, "\n");
}

TEST_F(DefaultsTest, FindsTheFileOfADomain) {
    const std::string elsewhere = folder_ + "/elsewhere";
    const std::vector<std::pair<Arguments, std::string>> cases = {
        {{"b.c", "b.c"}, preferencesFile("b.c")},
        {{"-g", "-globalDomain", "NSGlobalDomain"}, preferencesFile(".GlobalPreferences")},
        {{"/Library/Preferences/com.apple.TimeMachine.plist", "/Library/Preferences/com.apple.TimeMachine",
          "com.apple.TimeMachine"},
         preferencesFile("com.apple.TimeMachine")},
        {{elsewhere + ".plist", elsewhere}, elsewhere + ".plist"},
    };
    for (const auto& [names, path] : cases) {
        for (const std::string& name : names) {
            EXPECT_EQ(run({"write", name, "name", name}), Outcome{});
            EXPECT_EQ(UserDefaultsFile(path).object("name"), PropertyList{name});
        }
    }
    EXPECT_EQ(run({"domains"}).out, "b.c, com.apple.TimeMachine\n");
    EXPECT_NE(run({"read"}).out.find("    \"Apple Global Domain\" =     {\n        name = NSGlobalDomain;\n"),
              std::string::npos);
}

TEST_F(DefaultsTest, ExportsAndImports) {
    EXPECT_EQ(run({"export", "nope", "-"}).out,
              writeXmlPropertyList(PropertyList{PropertyList::Dictionary{}}));
    UserDefaultsFile(preferencesFile("d")).set("at", {Instant(std::chrono::milliseconds(1'714'558'500'999))});
    const Outcome exported = run({"export", "d", "-"});
    EXPECT_NE(exported.out.find("<date>2024-05-01T10:15:00Z</date>"), std::string::npos);
    EXPECT_EQ(run({"export", "d", folder_ + "/file"}), Outcome{});
    EXPECT_EQ(contentOf(folder_ + "/file"), exported.out);
    EXPECT_EQ(run({"import", "copy", "-"}, exported.out), Outcome{});
    EXPECT_EQ(run({"import", "old", folder_ + "/file"}), Outcome{});
    EXPECT_EQ(run({"export", "copy", "-"}), exported);
    EXPECT_EQ(run({"export", "old", "-"}), exported);
    EXPECT_EQ(run({"import", "d", "-"}, "{ a = "), run({"import", "d", "-"}, "<plist>"));
    EXPECT_EQ(run({"import", "d", folder_ + "/none"}).exitCode, 1);
    EXPECT_EQ(run({"export", "d", folder_ + "/none/file"}).exitCode, 1);
    EXPECT_EQ(run({"export", "d", "-"}), exported);
}

TEST_F(DefaultsTest, NeverReplacesWhatItCannotRead) {
    const std::string path = preferencesFile("d");
    makeFolder(preferencesFolder());
    std::ofstream(path) << "<plist><dict>";
    for (const Arguments& call : std::vector<Arguments>{{"read", "d"},
                                                        {"read", "d", "k"},
                                                        {"write", "d", "k", "v"},
                                                        {"write", "d", "{}"},
                                                        {"delete", "d"},
                                                        {"export", "d", "-"},
                                                        {"import", "d", "-"}}) {
        const Outcome outcome = run(call, "{ a = 1; }");
        EXPECT_EQ(outcome.exitCode, 1);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err, "");
    }
    EXPECT_EQ(contentOf(path), "<plist><dict>");
    EXPECT_EQ(run({"write", "/proc/none/d", "k", "v"}).err, "Could not write domain /proc/none/d; exiting\n");
}

TEST_F(DefaultsTest, RunsAsAProgram) {
    const std::string outputs = folder_ + "/run";
    int status = 0;
    ::waitpid(start({"write", "d", "key", "-int", "5"}, outputs), &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    ::waitpid(start({"read", "d", "key"}, outputs), &status, 0);
    EXPECT_EQ(contentOf(outputs + ".out"), "5\n");
    ::waitpid(start({"read", "nope"}, outputs), &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 1);
    const std::regex message(
        "[-0-9]+ [:0-9]+\\.[0-9]+ defaults\\[[0-9]+:[0-9]+\\] \nDomain nope does not exist\n");
    EXPECT_TRUE(std::regex_match(contentOf(outputs + ".err"), message));
    ::waitpid(start({}, outputs), &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 255);
}

TEST_F(DefaultsTest, KeepsEverySuccessfulWriteAmongKilledWriters) {
    constexpr unsigned writers = 20;
    constexpr int rounds = 12;
    std::mutex mutex;
    std::set<std::string> succeeded;
    int killed = 0;
    std::atomic<bool> done = false;
    std::thread reader([&] {
        const UserDefaultsFile file(preferencesFile("d"));
        for (bool seen = false; !done;) {
            const bool readable = file.all().has_value();
            EXPECT_TRUE(readable || !seen);
            seen = seen || readable;
        }
    });
    std::vector<std::thread> threads(writers);
    for (unsigned writer = 0; writer < writers; ++writer) {
        threads[writer] = std::thread([&, writer] {
            std::mt19937 random(writer);
            for (int round = 0; round < rounds; ++round) {
                const std::string key = std::to_string(writer) + "." + std::to_string(round);
                const pid_t child = start({"write", "d", key, "-string", std::string(random() % 3000, 'x')},
                                          folder_ + "/" + std::to_string(writer));
                if (random() % 2 == 0) {
                    std::this_thread::sleep_for(std::chrono::microseconds(random() % 60'000));
                    ::kill(child, SIGKILL);
                }
                int status = 0;
                ::waitpid(child, &status, 0);
                const std::lock_guard guard(mutex);
                if (WIFSIGNALED(status))
                    ++killed;
                else if (WEXITSTATUS(status) == 0)
                    succeeded.insert(key);
                else // a busy disk lets a writer wait too long for its turn; it must say so
                    EXPECT_EQ(contentOf(folder_ + "/" + std::to_string(writer) + ".err"),
                              "Could not write domain d; exiting\n")
                        << key;
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    done = true;
    reader.join();
    const auto entries = UserDefaultsFile(preferencesFile("d")).all();
    ASSERT_TRUE(entries);
    for (const std::string& key : succeeded)
        EXPECT_TRUE(entries->contains(key)) << key;
    RecordProperty("killed", killed);
    std::cout << succeeded.size() << " succeeded, " << killed << " were killed\n";
    EXPECT_GT(killed, 0);
    EXPECT_GT(succeeded.size(), writers);
}

} // namespace
} // namespace norvane
