// Lives as many years as wanted on all cores: simulate --years N [--seed S] [--one]
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "tests/simulation/simulation.h"

namespace {

using norvane::simulation::Outcome;

struct Options {
    double years = 200;
    std::uint64_t seed = 1;
    bool one = false; ///< One life of all the years, instead of many of a year each.
};

Options parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view name = argv[i];
        if (name == "--one")
            options.one = true;
        else if (name == "--years" && i + 1 < argc)
            options.years = std::strtod(argv[++i], nullptr);
        else if (name == "--seed" && i + 1 < argc)
            options.seed = std::strtoull(argv[++i], nullptr, 10);
    }
    return options;
}

int liveOne(const Options& options) {
    const Outcome outcome = norvane::simulation::simulate(options.seed, options.years);
    std::printf("%s\n%.2f years, seed %llu\n", outcome.report.c_str(), outcome.years,
                static_cast<unsigned long long>(options.seed));
    return outcome.violation.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Lives every `step`th life in this process; tells the parent of each by one character.
[[noreturn]] void liveMany(const Options& options, std::uint64_t first, std::uint64_t step, int tell) {
    for (std::uint64_t life = first; life < static_cast<std::uint64_t>(options.years); life += step) {
        const Outcome outcome = norvane::simulation::simulate(options.seed + life, 1);
        const bool broken = !outcome.violation.empty();
        if (broken)
            std::printf("\n%s\n", outcome.report.c_str());
        std::fflush(stdout);
        if (write(tell, broken ? "!" : ".", 1) != 1)
            break;
    }
    std::_Exit(EXIT_SUCCESS);
}

/// The number of lives that broke a rule, or that were lost with their process.
std::uint64_t follow(int told, std::uint64_t lives) {
    const auto start = std::chrono::steady_clock::now();
    std::uint64_t lived = 0;
    std::uint64_t broken = 0;
    for (char life = 0; read(told, &life, 1) == 1;) {
        ++lived;
        broken += life == '!' ? 1 : 0;
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        std::printf("\r%llu of %llu years, %.1f a second, %llu violations ",
                    static_cast<unsigned long long>(lived), static_cast<unsigned long long>(lives),
                    static_cast<double>(lived) / seconds, static_cast<unsigned long long>(broken));
        std::fflush(stdout);
    }
    return broken + (lives - lived);
}

} // namespace

int main(int argc, char** argv) {
    const Options options = parse(argc, argv);
    if (options.one)
        return liveOne(options);
    // Processes rather than threads: a process has one live controller.
    const std::uint64_t workers = std::max(1U, std::thread::hardware_concurrency());
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        return EXIT_FAILURE;
    for (std::uint64_t worker = 0; worker < workers; ++worker)
        if (fork() == 0)
            liveMany(options, worker, workers, ends[1]);
    close(ends[1]);
    const auto lives = static_cast<std::uint64_t>(options.years);
    const std::uint64_t broken = follow(ends[0], lives);
    while (wait(nullptr) > 0) {
    }
    std::printf("\nSeeds %llu to %llu: %llu of %llu years broke a rule.\n",
                static_cast<unsigned long long>(options.seed),
                static_cast<unsigned long long>(options.seed + lives - 1),
                static_cast<unsigned long long>(broken), static_cast<unsigned long long>(lives));
    return broken == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
