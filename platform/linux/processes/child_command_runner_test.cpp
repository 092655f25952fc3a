// The command runner among well and badly behaved children: what it tells of each, and that it leaves nothing
// behind.
#include "platform/linux/processes/child_command_runner.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <vector>

namespace norvane {

namespace {

using namespace std::chrono_literals;
using Result = std::optional<CommandResult>;

std::ptrdiff_t entriesOf(const char* folder) {
    return std::distance(std::filesystem::directory_iterator(folder), {});
}

/// Compares what the process holds at the end with what it held at the beginning.
class LeftoverCheck {
public:
    LeftoverCheck() {
        // The thread sanitizer starts a thread of its own beside the first one of a process.
        std::thread([] {}).join();
        std::this_thread::sleep_for(50ms);
        threads_ = entriesOf("/proc/self/task");
    }

    ~LeftoverCheck() {
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
        EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors_);
        // The kernel lists a thread for a moment after it was joined.
        for (int attempt = 0; attempt < 500 && entriesOf("/proc/self/task") != threads_; ++attempt)
            std::this_thread::sleep_for(10ms);
        EXPECT_EQ(entriesOf("/proc/self/task"), threads_);
    }

private:
    const std::ptrdiff_t descriptors_ = entriesOf("/proc/self/fd");
    std::ptrdiff_t threads_ = 0;
};

/// Calls `job` with 0 to count - 1, from several threads.
void runOnThreads(std::size_t threadCount, std::size_t count, const std::function<void(std::size_t)>& job) {
    std::atomic<std::size_t> next = 0;
    std::vector<std::thread> threads(threadCount);
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            for (std::size_t index = next++; index < count; index = next++)
                job(index);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

Result shell(const std::string& script, double timeoutSeconds = 60) {
    return ChildCommandRunner().run("/bin/sh", {"-c", script}, timeoutSeconds);
}

struct Child {
    std::size_t times;
    const char* script;
    double timeoutSeconds;
    Result expected;
};

constexpr double noLimit = 60;

std::vector<Child> badChildren() {
    return {
        // Slow ones first, beside which the others run.
        {16, "trap '' TERM; echo kept; while :; do sleep 0.1; done", 1, CommandResult{9, "kept\n", ""}},
        {16, "sleep 5 & echo out", 1, CommandResult{0, "out\n", ""}}, // its own child keeps the streams
        {60, "exec sleep 30", 0.1, CommandResult{15, "", ""}},
        {60, "exec sleep 30 >&- 2>&-", 0.1, CommandResult{15, "", ""}},
        {98, "exec >&- 2>&-; sleep 0.01; exit 7", noLimit, CommandResult{7, "", ""}},
        {50, "printf %0200000d 1 >&2; echo out", noLimit,
         CommandResult{0, "out\n", std::string(199'999, '0') + "1"}},
        {99, nullptr, noLimit, std::nullopt}, // cannot start
        {50, "kill -SEGV $$", noLimit, CommandResult{11, "", ""}},
        {50, R"(printf '\377'; printf 'gr\303\274n' >&2)", noLimit, CommandResult{0, "", "grün"}},
        {500, "echo out; echo err >&2; exit 3", noLimit, CommandResult{3, "out\n", "err\n"}},
    };
}

TEST(ChildCommandRunner, PassesArgumentsAsTheyAre) {
    EXPECT_EQ(ChildCommandRunner().run("/usr/bin/printf", {"%s|", "a b", "$HOME", "", "*"}, 10),
              (CommandResult{0, "a b|$HOME||*|", ""}));
    EXPECT_EQ(ChildCommandRunner().run("/etc/passwd", {}, 10), std::nullopt) << "no program";
}

TEST(ChildCommandRunner, AnUnknownEndIsNoSuccess) {
    auto* const before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shell("exit 3"), std::nullopt);
    std::signal(SIGCHLD, before);
}

TEST(ChildCommandRunner, AThousandBadChildrenLeaveNothingBehind) {
    const LeftoverCheck leftovers;
    std::vector<Child> runs;
    for (const Child& child : badChildren())
        runs.insert(runs.end(), child.times, child);
    const ChildCommandRunner runner;
    runOnThreads(16, runs.size(), [&](std::size_t index) {
        const Child& child = runs[index];
        const Result result = child.script ? shell(child.script, child.timeoutSeconds)
                                           : runner.run("/nonexistent/tool", {}, child.timeoutSeconds);
        EXPECT_TRUE(result == child.expected) << (child.script ? child.script : "no tool") << ": exit code "
                                              << (result ? std::to_string(result->exitCode) : "none");
    });
    const Result large = runner.run("/usr/bin/head", {"-c", "200000000", "/dev/zero"}, noLimit);
    ASSERT_TRUE(large);
    EXPECT_EQ(large->exitCode, 0);
    EXPECT_EQ(large->stdout.size(), 200'000'000U);
    EXPECT_EQ(runs.size() + 1, 1'000U);
}

TEST(ChildCommandRunner, TooFewDescriptorsNeitherHangNorLeak) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizers need descriptors of their own and report nonsense without them";
#endif
    const LeftoverCheck leftovers;
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit scarce{static_cast<rlim_t>(entriesOf("/proc/self/fd")) + 12, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &scarce), 0);
    const ChildCommandRunner runner;
    runOnThreads(12, 24, [&](std::size_t) {
        // Those that find no descriptor try again at once, and take one from the others at any moment.
        Result result;
        while (!result)
            result = runner.run("/bin/sleep", {"5"}, 0.02);
        EXPECT_EQ(result->exitCode, 15);
    });
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
}

} // namespace

} // namespace norvane
