#include "platform/linux/processes/linux_tool_paths.h"

#include <gtest/gtest.h>

#include "platform/simulated/simulated_services.h"

namespace norvane {

namespace {

TEST(ToolPaths, TheSystemsToolsComeFirst) {
    SimulatedFileSystem files;
    EXPECT_EQ(chooseTools(files, "/opt/n/bin").tmutil, "/opt/n/libexec/norvane/tmutil");
    files.paths = {"/usr/bin/defaults"};
    EXPECT_EQ(chooseTools(files, "/opt/n/bin").defaults, "/opt/n/libexec/norvane/defaults")
        << "somebody else's";
    files.paths = {"/usr/bin/tmutil", "/usr/bin/defaults"};
    EXPECT_EQ(chooseTools(files, "/opt/n/bin").tmutil, "/usr/bin/tmutil");
    EXPECT_EQ(chooseTools(files, "/opt/n/bin").defaults, "/usr/bin/defaults");
}

} // namespace

} // namespace norvane
