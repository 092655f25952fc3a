#include "platform/linux/processes/child_command_runner.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>

namespace norvane {
namespace {

std::optional<CommandResult> shell(const std::string& script, double timeoutSeconds = 20) {
    return ChildCommandRunner().run("/bin/sh", {"-c", script}, timeoutSeconds);
}

TEST(ChildCommandRunner, GivesStatusAndBothStreams) {
    EXPECT_EQ(shell(""), (CommandResult{0, "", ""}));
    EXPECT_EQ(shell("printf x >&2; exit 3"), (CommandResult{3, "", "x"}));
    EXPECT_EQ(shell("echo out; echo err >&2"), (CommandResult{0, "out\n", "err\n"}));
    EXPECT_EQ(shell("kill -KILL $$"), (CommandResult{9, "", ""}));
}

TEST(ChildCommandRunner, PassesArgumentsAsTheyAre) {
    const auto result = ChildCommandRunner().run("/usr/bin/printf", {"%s|", "a b", "$HOME", "", "*"}, 10);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->stdout, "a b|$HOME||*|");
}

TEST(ChildCommandRunner, WhatCannotStartIsNoResult) {
    EXPECT_EQ(ChildCommandRunner().run("/nonexistent/tool", {}, 10), std::nullopt);
    EXPECT_EQ(ChildCommandRunner().run("/etc/passwd", {}, 10), std::nullopt);
}

TEST(ChildCommandRunner, AnUnknownEndIsNoSuccess) {
    auto* const before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shell("exit 3"), std::nullopt);
    std::signal(SIGCHLD, before);
}

TEST(ChildCommandRunner, TextThatIsNotUtf8IsEmptyTheOtherStreamStays) {
    EXPECT_EQ(shell(R"(printf '\377'; printf 'gr\303\274n' >&2)"), (CommandResult{0, "", "grün"}));
}

TEST(ChildCommandRunner, AFullErrorStreamDoesNotStallTheChild) {
    const auto result = shell("head -c 3000000 /dev/zero | tr '\\0' e >&2; echo done");
    ASSERT_TRUE(result);
    EXPECT_EQ(result->stdout, "done\n");
    EXPECT_EQ(result->stderr.size(), 3000000U);
}

TEST(ChildCommandRunner, EndsAChildThatTakesTooLong) {
    EXPECT_EQ(shell("exec sleep 60", 0.1)->exitCode, 15);
    EXPECT_EQ(shell("trap '' TERM; echo kept; while :; do sleep 0.1; done", 0.3),
              (CommandResult{9, "kept\n", ""}));
    // The child is gone, its own child holds the streams: what was read so far counts.
    EXPECT_EQ(shell("sleep 30 & echo out", 0.1), (CommandResult{0, "out\n", ""}));
}

} // namespace
} // namespace norvane
