#include "timemachine_linux/defaults/defaults_command.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <list>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <vector>

#include "platform/linux/files/small_file.h"
#include "platform/linux/files/user_defaults_file.h"
#include "platform/linux/files/user_folders.h"
#include "platform/text/property_list_xml.h"
#include "tests/support/test_peers.h"

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

/// The words of a command line; "|" between them where one holds spaces.
Arguments words(const std::string& line) {
    std::istringstream stream(line);
    Arguments all;
    const char separator = line.find('|') == std::string::npos ? ' ' : '|';
    for (std::string word; std::getline(stream, word, separator);)
        all.push_back(word);
    return all;
}

class DefaultsTest : public testing::Test {
protected:
    DefaultsTest() { ::setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1); }

    static Outcome run(const Arguments& arguments, const std::string& input = "") {
        std::istringstream in(input);
        std::ostringstream out;
        std::ostringstream err;
        const int exitCode = runDefaults({arguments, "NOW "}, in, out, err);
        return {exitCode, out.str(), err.str()};
    }
    static Outcome run(const std::string& line, const std::string& input = "") {
        return run(words(line), input);
    }
    static Arguments program(const std::string& line) {
        return words(NORVANE_LIBEXEC_DIR "/defaults " + line);
    }

    ScratchFolder folder_;
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
    EXPECT_EQ(run("write d list -array-add a"), Outcome{});
    EXPECT_EQ(run("write d list -array-add b c"), Outcome{});
    EXPECT_EQ(run("read d list").out, "(\n    a,\n    b,\n    c\n)\n");
    run({"write", "d", "text", ""});
    EXPECT_EQ(run("write d text -array-add b").exitCode, 1);
    EXPECT_EQ(run("read d text").out, "\n");
}

TEST_F(DefaultsTest, RefusesBadValuesWithoutWriting) {
    for (const char* value :
         {"-int 12x", "-int", "-int 1 2", "a b", "-float x", "-bool maybe", "-date yesterday", "-data 0g",
          "-data 0", "-array -int x", "-dict k", "{k=", "<dict>", "\xFF"}) {
        const Outcome outcome = run(std::string("write d key ") + value);
        EXPECT_EQ(outcome.exitCode, 1) << value;
        EXPECT_FALSE(outcome.err.empty());
        EXPECT_FALSE(fs::exists(preferencesFile("d"))) << value;
    }
    EXPECT_EQ(run("write d (a)").err, "Rep argument is not a dictionary\nDefaults have not been changed.\n");
    for (const char* call : {"", "reed", "read d k x", "write d"})
        EXPECT_EQ(run(call).exitCode, 255) << call;
    EXPECT_EQ(run("help").exitCode, 0);
}

TEST_F(DefaultsTest, SaysWhatIsMissing) {
    EXPECT_EQ(run("read nope"), (Outcome{1, "", "NOW \nDomain nope does not exist\n"}));
    EXPECT_EQ(run("delete nope").exitCode, 1);
    run("write|d|{ a = 1; b = 2; }");
    const std::string missing = "NOW \nThe domain/default pair of (d, c) does not exist\n";
    EXPECT_EQ(run("read d c"), (Outcome{1, "", missing}));
    EXPECT_EQ(run("delete d a"), Outcome{});
    EXPECT_EQ(run("read d"), (Outcome{0, "{\n    b = 2;\n}\n", ""}));
    EXPECT_EQ(run("delete d"), Outcome{});
    EXPECT_EQ(run("read d").exitCode, 1);
    EXPECT_EQ(run("domains").out, "\n");
}

TEST_F(DefaultsTest, FindsTheFileOfADomain) {
    const std::string elsewhere = folder_.path() + "/elsewhere";
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
    EXPECT_EQ(run("domains").out, "b.c, com.apple.TimeMachine\n");
    EXPECT_NE(run("read").out.find("    \"Apple Global Domain\" =     {\n        name = NSGlobalDomain;\n"),
              std::string::npos);
}

TEST_F(DefaultsTest, ExportsAndImports) {
    const std::string file = folder_.path("file");
    EXPECT_EQ(run("export nope -").out, writeXmlPropertyList(PropertyList{PropertyList::Dictionary{}}));
    UserDefaultsFile(preferencesFile("d")).set("at", {Instant(std::chrono::milliseconds(1'714'558'500'999))});
    const Outcome exported = run("export d -");
    EXPECT_NE(exported.out.find("<date>2024-05-01T10:15:00Z</date>"), std::string::npos);
    EXPECT_EQ(run("export d " + file), Outcome{});
    EXPECT_EQ(readSmallFile(file), exported.out);
    EXPECT_EQ(run("import copy -", exported.out), Outcome{});
    EXPECT_EQ(run("import old " + file), Outcome{});
    EXPECT_EQ(run("export copy -"), exported);
    EXPECT_EQ(run("export old -"), exported);
    EXPECT_EQ(run("import d -", "{ a = "), run("import d -", "<plist>"));
    EXPECT_EQ(run("import d " + file + "/none").exitCode, 1);
    EXPECT_EQ(run("export d " + file + "/none").exitCode, 1);
    EXPECT_EQ(run("export d -"), exported);
}

TEST_F(DefaultsTest, NeverReplacesWhatItCannotRead) {
    const std::string path = preferencesFile("d");
    makeFolder(preferencesFolder());
    std::ofstream(path) << "<plist><dict>";
    for (const char* call :
         {"read d", "read d k", "write d k v", "write d {}", "delete d", "export d -", "import d -"}) {
        const Outcome outcome = run(call, "{ a = 1; }");
        EXPECT_EQ(outcome.exitCode, 1) << call;
        EXPECT_EQ(outcome.out, "") << call;
        EXPECT_NE(outcome.err, "") << call;
    }
    EXPECT_EQ(readSmallFile(path), "<plist><dict>");
    EXPECT_EQ(run("write /proc/none/d k v").err, "Could not write domain /proc/none/d; exiting\n");
}

TEST_F(DefaultsTest, RunsAsAProgram) {
    EXPECT_EQ(PeerProcess(program("write d key -int 5")).waitForExit(), 0);
    PeerProcess reading(program("read d key"));
    EXPECT_EQ(reading.waitForExit(), 0);
    EXPECT_EQ(reading.output(), "5\n");
    PeerProcess missing(program("read nope"));
    EXPECT_EQ(missing.waitForExit(), 1);
    const std::regex message(
        "[-0-9]+ [:0-9]+\\.[0-9]+ defaults\\[[0-9]+:[0-9]+\\] \nDomain nope does not exist\n");
    EXPECT_TRUE(std::regex_match(missing.output(), message)) << missing.output();
    EXPECT_EQ(PeerProcess(program("")).waitForExit(), 255);
}

TEST_F(DefaultsTest, KeepsEverySuccessfulWriteAmongKilledWriters) {
    std::mt19937 random(1);
    std::set<std::string> succeeded;
    for (int round = 0; round < 12; ++round) {
        std::list<PeerProcess> writers;
        for (int i = 0; i < 12; ++i)
            writers.emplace_back(program("write d " + std::to_string(round) + "." + std::to_string(i) +
                                         " -string " + std::string(1 + random() % 3000, 'x')));
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 30'000));
        int i = 0;
        for (PeerProcess& writer : writers) {
            if (i % 2 == 0)
                writer.end();
            if (writer.waitForExit(30) == 0)
                succeeded.insert(std::to_string(round) + "." + std::to_string(i));
            ++i;
        }
    }
    const auto entries = UserDefaultsFile(preferencesFile("d")).all();
    ASSERT_TRUE(entries);
    for (const std::string& key : succeeded)
        EXPECT_TRUE(entries->contains(key)) << key;
    EXPECT_GE(succeeded.size(), 12U * 6);
}

} // namespace

} // namespace norvane
