// The architecture as a test: who may include what, and that the papers know the house.
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Include {
    std::string file; ///< Relative to the source tree.
    int line = 0;
    std::string target;
    bool ofSystem = false; ///< In angle brackets.
};

/// Every room of the house, and the rooms that its product code may include from beside itself. A folder that
/// is no room of its own belongs to the one around it.
const std::map<std::string, std::set<std::string>> rooms = [] {
    using Rooms = std::set<std::string>;
    const auto with = [](Rooms some, const Rooms& more) {
        some.insert(more.begin(), more.end());
        return some;
    };
    const Rooms interfaces = {"platform", "platform/text"};
    const Rooms files = with(interfaces, {"platform/linux/files"});
    const Rooms bus = with(files, {"platform/linux/bus"});
    const Rooms core = with(interfaces, {"scheduler_core"});
    const Rooms tools = with(core, {"timemachine"});
    const Rooms decisions = with(tools, {"controller", "diagnostics"});
    return std::map<std::string, Rooms>{
        {"platform/text", {}},
        {"platform", {"platform/text"}},
        {"platform/simulated", interfaces},
        {"platform/linux/files", interfaces},
        {"platform/linux/processes", files},
        {"platform/linux/crashes", files},
        {"platform/linux/time", interfaces},
        {"platform/linux/applications", files},
        {"platform/linux/network", interfaces},
        {"platform/linux/bus", files},
        {"platform/linux/event_loop", with(bus, {"platform/linux/crashes"})},
        {"platform/linux/desktop", bus},
        {"platform/linux/measurements", with(bus, {"platform/linux/applications"})},
        {"scheduler_core", interfaces},
        {"timemachine", core},
        {"diagnostics", interfaces},
        {"controller", with(tools, {"diagnostics"})},
        {"ui", decisions},
        {"timemachine_linux", with(files, {"platform/linux/processes", "platform/linux/time"})},
        {"settings_pane", with(interfaces, {"ui", "timemachine_linux"})},
        {"app", with(decisions, {"ui"})},
    };
}();

bool isIn(const std::string& path, const std::string& folder) { return path.starts_with(folder + "/"); }

/// The innermost room; empty for the system's headers, and for moc's output beside its source.
std::string roomOf(const std::string& path) {
    std::string found;
    for (const auto& [room, uses] : rooms)
        if (isIn(path, room) && room.size() > found.size())
            found = room;
    return found;
}

bool isTestCode(const std::string& file) {
    return file.ends_with("_test.cpp") || isIn(file, "tests") || isIn(file, "fuzz") ||
           isIn(file, "benchmarks") || isIn(file, "platform/simulated");
}

std::vector<Include> includesOf(const fs::path& path, const std::string& name) {
    static const std::regex directive(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::vector<Include> includes;
    std::ifstream file(path);
    std::string text;
    for (int line = 1; std::getline(file, text); ++line) {
        std::smatch match;
        if (std::regex_search(text, match, directive))
            includes.push_back({name, line, match[2], match[1] == "<"});
    }
    return includes;
}

/// The source files, relative to the tree.
std::vector<std::string> sourceFiles() {
    std::vector<std::string> files;
    const fs::path root(NORVANE_SOURCE_DIR);
    for (const auto& top : fs::directory_iterator(root)) {
        if (!top.is_directory() || top.path().filename() == "build" ||
            top.path().filename().string().starts_with('.'))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(top))
            if (const auto extension = entry.path().extension();
                extension == ".h" || extension == ".cpp" || extension == ".qml")
                files.push_back(entry.path().lexically_relative(root));
    }
    return files;
}

std::vector<Include> allIncludes() {
    std::vector<Include> includes;
    for (const std::string& file : sourceFiles()) {
        const auto found = includesOf(fs::path(NORVANE_SOURCE_DIR) / file, file);
        includes.insert(includes.end(), found.begin(), found.end());
    }
    return includes;
}

std::string textOf(const fs::path& path) {
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

std::string place(const Include& include) {
    return include.file + ":" + std::to_string(include.line) + " includes " + include.target;
}

bool isMain(const std::string& file) { return isIn(file, "app") || file == "settings_pane/main.cpp"; }

bool mayUseQt(const std::string& file) {
    return isIn(file, "platform/linux") || isIn(file, "ui") || isIn(file, "settings_pane") || isMain(file);
}

bool mayUseLinux(const std::string& file) {
    return isIn(file, "platform/linux") || isIn(file, "timemachine_linux") || isMain(file);
}

TEST(SourceRules, RoomsIncludeOnlyDownwards) {
    for (const Include& include : allIncludes()) {
        const std::string from = roomOf(include.file);
        const std::string to = include.ofSystem ? "" : roomOf(include.target);
        if (isTestCode(include.file) || isMain(include.file) || to.empty() || from == to)
            continue;
        EXPECT_TRUE(!from.empty() && rooms.at(from).contains(to)) << place(include);
    }
}

TEST(SourceRules, WhatTestsShareIsTheirs) {
    for (const Include& include : allIncludes())
        EXPECT_TRUE(isTestCode(include.file) || !isTestCode(include.target)) << place(include);
}

TEST(SourceRules, OnlyTheTopAndTheAdaptersKnowQtAndTheSystem) {
    for (const Include& include : allIncludes()) {
        if (isTestCode(include.file))
            continue;
        const bool qt = include.ofSystem && std::regex_search(include.target, std::regex("^Q[A-Zt]"));
        EXPECT_TRUE(!qt || mayUseQt(include.file)) << place(include);
        EXPECT_TRUE(!isIn(include.target, "platform/linux") || mayUseLinux(include.file)) << place(include);
        // The C++ library's headers have no extension; so have none of the system's. Named ones are
        // libraries.
        const bool library = isIn(include.target, "cctz") || isIn(include.target, "unicode") ||
                             isIn(include.target, "nlohmann") || include.target == "pugixml.hpp";
        const bool ofSystem = include.ofSystem && include.target.ends_with(".h") && !library;
        EXPECT_TRUE(!ofSystem || mayUseLinux(include.file) || mayUseQt(include.file)) << place(include);
    }
}

TEST(SourceRules, TheTimeComesThroughTheClock) {
    const std::regex reading(R"(_clock::now|\bclock_gettime\(|\bgettimeofday\(|\btime\((nullptr|NULL|0)\))"
                             R"(|QElapsedTimer|::current(DateTime|MSecs|Time|Date)|Date\.now|new Date\(\))");
    for (const std::string& file : sourceFiles()) {
        if (!isTestCode(file) && !isIn(file, "platform/linux")) {
            EXPECT_FALSE(std::regex_search(textOf(fs::path(NORVANE_SOURCE_DIR) / file), reading)) << file;
        }
    }
}

/// A path in backquotes, such as `app/main.cpp` or `docs/`; not those of the user's machine.
TEST(SourceRules, PapersNameWhatIsThere) {
    const fs::path root(NORVANE_SOURCE_DIR);
    const std::regex path("`([A-Za-z_]+/[A-Za-z0-9_./-]*)`");
    std::vector<fs::path> papers = {root / "README.md", root / "CONTRIBUTING.md"};
    for (const auto& entry : fs::directory_iterator(root / "docs"))
        if (entry.path().extension() == ".md")
            papers.push_back(entry.path());
    for (const fs::path& paper : papers) {
        const std::string text = textOf(paper);
        for (std::sregex_iterator match(text.begin(), text.end(), path), end; match != end; ++match) {
            const std::string name = (*match)[1];
            EXPECT_TRUE(name.starts_with("build/") || fs::exists(root / name)) << paper << ": " << name;
        }
    }
}

} // namespace
