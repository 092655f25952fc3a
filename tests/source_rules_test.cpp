// The architecture as a test: who may include what, and that the papers know the house.
#include <algorithm>
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

/// Every room of the house, and the rooms that it stands on. Its product code may include from these, from
/// what they stand on, and from itself. A folder that is no room of its own belongs to the one around it.
const std::map<std::string, std::vector<std::string>> rooms = {
    {"platform/time", {}},
    {"platform/text", {"platform/time"}},
    {"platform", {"platform/text"}},
    {"platform/simulated", {"platform"}},
    {"platform/linux/files", {"platform"}},
    {"platform/linux/processes", {"platform/linux/files"}},
    {"platform/linux/crashes", {"platform/linux/files"}},
    {"platform/linux/time", {"platform"}},
    {"platform/linux/applications", {"platform/linux/files"}},
    {"platform/linux/network", {"platform"}},
    {"platform/linux/bus", {"platform/linux/files"}},
    {"platform/linux/event_loop", {"platform/linux/bus", "platform/linux/crashes"}},
    {"platform/linux/desktop", {"platform/linux/bus"}},
    {"platform/linux/measurements", {"platform/linux/bus", "platform/linux/applications"}},
    {"scheduler_core", {"platform"}},
    {"timemachine", {"scheduler_core"}},
    {"diagnostics", {"platform"}},
    {"controller/log", {"platform"}},
    {"controller", {"controller/log", "diagnostics", "timemachine"}},
    {"ui/kit", {"platform"}},
    {"ui/texts", {"ui/kit", "controller"}},
    {"ui/panel", {"ui/texts"}},
    {"ui/health", {"ui/texts"}},
    {"ui/local_snapshots", {"ui/kit", "timemachine"}},
    {"ui/onboarding", {"ui/texts"}},
    {"ui/settings", {"ui/texts"}},
    {"timemachine_linux/files", {"platform/linux/files"}},
    {"timemachine_linux/session", {"timemachine_linux/files"}},
    {"timemachine_linux/rsync", {"timemachine_linux/session"}},
    {"timemachine_linux/snapshots", {"timemachine_linux/session"}},
    {"timemachine_linux/local_snapshots", {"timemachine_linux/snapshots"}},
    {"timemachine_linux/sources", {"timemachine_linux/local_snapshots"}},
    {"timemachine_linux/destination", {"timemachine_linux/local_snapshots"}},
    {"timemachine_linux/backup",
     {"timemachine_linux/destination", "timemachine_linux/rsync", "timemachine_linux/sources"}},
    {"timemachine_linux/restore", {"timemachine_linux/destination", "timemachine_linux/rsync"}},
    {"timemachine_linux/settings", {"timemachine_linux/destination", "timemachine_linux/sources"}},
    {"timemachine_linux/tmutil",
     {"timemachine_linux/backup", "timemachine_linux/restore", "timemachine_linux/settings",
      "platform/linux/processes", "platform/linux/time"}},
    {"timemachine_linux/defaults", {"timemachine_linux/files", "platform/linux/time"}},
    {"settings_pane", {"ui/kit", "timemachine_linux/settings"}},
    {"app",
     {"ui/panel", "ui/health", "ui/local_snapshots", "ui/onboarding", "ui/settings", "platform/linux/crashes",
      "platform/linux/desktop", "platform/linux/event_loop", "platform/linux/measurements",
      "platform/linux/network", "platform/linux/processes", "platform/linux/time"}},
};

/// Whether one room is the other, or stands on it.
bool standsOn(const std::string& room, const std::string& other) {
    return room == other || std::ranges::any_of(rooms.at(room), [&](const std::string& below) {
               return standsOn(below, other);
           });
}

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

/// Where the real services are made.
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
        if (isTestCode(include.file) || isMain(include.file) || to.empty())
            continue;
        EXPECT_TRUE(!from.empty() && standsOn(from, to)) << place(include);
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
