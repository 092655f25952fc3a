// The architecture as a test: who may include what.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
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

/// A folder of the project and everything that it may include from. Tests may use the simulated services too.
const std::map<std::string, std::set<std::string>> allowedFolders = {
    {"platform", {"platform"}},
    {"scheduler_core", {"scheduler_core", "platform"}},
    {"timemachine", {"timemachine", "scheduler_core", "platform"}},
    {"diagnostics", {"diagnostics", "platform"}},
    {"controller", {"controller", "diagnostics", "timemachine", "scheduler_core", "platform"}},
    {"ui", {"ui", "controller", "diagnostics", "timemachine", "scheduler_core", "platform"}},
    {"timemachine_linux", {"timemachine_linux", "platform"}},
    {"settings_pane", {"settings_pane", "ui", "timemachine_linux", "platform"}},
    {"app", {"app", "ui", "controller", "diagnostics", "timemachine", "scheduler_core", "platform"}},
};

std::string folderOf(const std::string& path) { return path.substr(0, path.find('/')); }
bool isTestCode(const std::string& file) {
    return file.ends_with("_test.cpp") || file.ends_with("_harness.h") ||
           file.starts_with("platform/simulated/") || file == "controller/simulated_program.h";
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

std::vector<Include> allIncludes() {
    std::vector<Include> includes;
    const fs::path root(NORVANE_SOURCE_DIR);
    for (const auto& [folder, allowed] : allowedFolders) {
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const std::string extension = entry.path().extension();
            if (extension != ".h" && extension != ".cpp")
                continue;
            const auto found = includesOf(entry.path(), entry.path().lexically_relative(root).string());
            includes.insert(includes.end(), found.begin(), found.end());
        }
    }
    return includes;
}

std::string place(const Include& include) {
    return include.file + ":" + std::to_string(include.line) + " includes " + include.target;
}

bool mayUseQt(const std::string& file) {
    return file.starts_with("platform/linux/") || file.starts_with("ui/") ||
           file.starts_with("settings_pane/") || file.starts_with("app/");
}

bool mayUseLinux(const std::string& file) {
    return file.starts_with("platform/linux/") || file.starts_with("app/") ||
           file == "settings_pane/main.cpp" || file.starts_with("timemachine_linux/");
}

TEST(SourceRules, FoldersIncludeOnlyDownwards) {
    for (const Include& include : allIncludes()) {
        if (include.ofSystem || include.target.find('/') == std::string::npos)
            continue; // a system header, or moc's output beside its source
        EXPECT_TRUE(allowedFolders.at(folderOf(include.file)).contains(folderOf(include.target)))
            << place(include);
    }
}

TEST(SourceRules, AWindowKnowsNoOther) {
    for (const Include& include : allIncludes()) {
        const std::string folder = folderOf(include.file);
        if ((folder != "ui" && folder != "settings_pane") || isTestCode(include.file))
            continue;
        const std::string own = folder == "ui" ? include.file.substr(0, include.file.find('/', 3)) : "";
        if (include.target.starts_with("ui/")) {
            const std::string other = include.target.substr(0, include.target.find('/', 3));
            EXPECT_TRUE(other == own || other == "ui/kit" ||
                        (other == "ui/texts" && !own.empty() && own != "ui/kit"))
                << place(include);
        }
        EXPECT_TRUE(own != "ui/kit" || include.ofSystem || folderOf(include.target) == "platform" ||
                    include.target.starts_with("ui/"))
            << place(include);
    }
}

TEST(SourceRules, OnlyTheTopAndTheAdaptersKnowQtAndLinux) {
    for (const Include& include : allIncludes()) {
        const bool qt = include.ofSystem && std::regex_search(include.target, std::regex("^Q[A-Zt]"));
        EXPECT_TRUE(!qt || mayUseQt(include.file)) << place(include);
        const bool adapter = include.target.starts_with("platform/linux/");
        EXPECT_TRUE(!adapter || mayUseLinux(include.file)) << place(include);
        const bool simulated = include.target.starts_with("platform/simulated/");
        EXPECT_TRUE(!simulated || isTestCode(include.file)) << place(include);
    }
}

TEST(SourceRules, InterfacesAndLogicUseNoSystemHeaders) {
    for (const Include& include : allIncludes()) {
        if (!include.ofSystem || mayUseLinux(include.file) || mayUseQt(include.file) ||
            isTestCode(include.file))
            continue;
        // The C++ library's headers have no extension; so have none of the system's. Named ones are
        // libraries.
        const bool library = include.target.starts_with("cctz/") || include.target.starts_with("unicode/") ||
                             include.target.starts_with("nlohmann/") || include.target == "pugixml.hpp";
        EXPECT_TRUE(library || !include.target.ends_with(".h")) << place(include);
    }
}

} // namespace
