// What a status poll costs as the program makes it, beside starting the same tool bare and reading its one
// pipe. The two alternate, so that whatever slows the machine slows both; the counters are medians in
// milliseconds.
#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "platform/linux/desktop/desktop_workspace.h"
#include "platform/linux/network/tcp_network_probe.h"
#include "platform/linux/processes/child_command_runner.h"
#include "tests/support/backup_sandbox.h"
#include "timemachine/tm_util.h"

namespace norvane {

namespace {

constexpr auto tool = NORVANE_LIBEXEC_DIR "/tmutil";

template <typename Work>
double millisecondsOf(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The bytes read; none of what the program's runner adds: no second stream, no time limit, no signal set-up.
std::size_t spawnBare() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0)
        std::abort();
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::string verb = "status";
    std::string name = tool;
    const std::array<char*, 3> argv = {name.data(), verb.data(), nullptr};
    pid_t child = 0;
    if (::posix_spawn(&child, tool, &actions, nullptr, argv.data(), environ) != 0)
        std::abort();
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(ends[1]);
    std::array<char, 64 * 1024> buffer{};
    std::size_t total = 0;
    for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
        total += static_cast<std::size_t>(count);
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return total;
}

void statusPoll(benchmark::State& state) {
    const BackupSandbox sandbox;
    const ChildCommandRunner runner;
    const TcpNetworkProbe network([](const QString& name) { return QDBusConnection(name); }); // never asked
    DesktopWorkspace workspace;
    const TMUtil tmUtil(runner, {tool, ""}, network, workspace);
    std::vector<double> bare;
    std::vector<double> polls;
    while (state.KeepRunning()) {
        bare.push_back(millisecondsOf([] { benchmark::DoNotOptimize(spawnBare()); }));
        polls.push_back(millisecondsOf([&] { benchmark::DoNotOptimize(tmUtil.status()); }));
    }
    state.counters["bare"] = median(bare);
    state.counters["poll"] = median(polls);
    state.counters["ratio"] = median(polls) / median(bare);
}
BENCHMARK(statusPoll)->Iterations(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

} // namespace norvane

BENCHMARK_MAIN();
