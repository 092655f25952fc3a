// Lives as many years as wanted on all cores: simulate --years N [--seed S] [--one]
#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "tests/simulation/simulation.h"

namespace {

using norvane::simulation::Outcome;

struct Options {
    double years = 200;
    std::uint64_t seed = 1;
    bool one = false; ///< One life of all the years, instead of many of a year each.
};

/// None: something is asked for that there is not.
std::optional<Options> parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view name = argv[i];
        char* rest = nullptr;
        if (name == "--one")
            options.one = true;
        else if (name == "--years" && i + 1 < argc)
            options.years = std::strtod(argv[++i], &rest);
        else if (name == "--seed" && i + 1 < argc)
            options.seed = std::strtoull(argv[++i], &rest, 10);
        else
            return std::nullopt;
        if (rest && (rest == argv[i] || *rest != '\0'))
            return std::nullopt;
    }
    return options.years > 0 ? std::optional(options) : std::nullopt;
}

std::uint64_t livesOf(const Options& options) { return static_cast<std::uint64_t>(std::ceil(options.years)); }

double yearsOf(const Options& options, std::uint64_t life) {
    return std::min(1.0, options.years - static_cast<double>(life));
}

int liveOne(const Options& options) {
    const Outcome outcome = norvane::simulation::simulate(options.seed, options.years);
    std::printf("%s\n%.2f years, seed %llu\n", outcome.report.c_str(), outcome.years,
                static_cast<unsigned long long>(options.seed));
    return outcome.violation.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Lives every `step`th life in this process; tells the parent of each by one character.
[[noreturn]] void liveMany(const Options& options, std::uint64_t first, std::uint64_t step, int tell) {
    for (std::uint64_t life = first; life < livesOf(options); life += step) {
        const Outcome outcome = norvane::simulation::simulate(options.seed + life, yearsOf(options, life));
        const bool broken = !outcome.violation.empty();
        if (broken)
            std::printf("\n%s\n", outcome.report.c_str());
        std::fflush(stdout);
        if (write(tell, broken ? "!" : ".", 1) != 1)
            break;
    }
    std::_Exit(EXIT_SUCCESS);
}

/// Lives on all cores. Processes rather than threads: a process has one live controller.
class Crowd {
public:
    explicit Crowd(const Options& options) : options_(options) {
        workers_.resize(std::min<std::uint64_t>(std::max(1U, std::thread::hardware_concurrency()), lives_));
        for (std::uint64_t i = 0; i < workers_.size(); ++i)
            begin(workers_[i], i);
    }

    /// The number of lives that broke a rule, or did not come to their end.
    std::uint64_t live() {
        while (std::any_of(workers_.begin(), workers_.end(), [](const Worker& w) { return w.process != 0; }))
            for (Worker& worker : workers_)
                if (worker.process != 0)
                    follow(worker);
        return broken_;
    }

private:
    using Time = std::chrono::steady_clock;
    struct Worker {
        pid_t process = 0; // 0: none
        int told = -1;
        std::uint64_t life = 0; // that it lives now
        Time::time_point since;
    };

    void begin(Worker& worker, std::uint64_t life) {
        std::array<int, 2> ends{};
        worker.process = 0;
        if (life >= lives_)
            return;
        std::fflush(stdout);
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            std::exit(EXIT_FAILURE);
        worker = {fork(), ends[0], life, Time::now()};
        if (worker.process == 0)
            liveMany(options_, life, workers_.size(), ends[1]);
        close(ends[1]);
        if (worker.process < 0)
            std::exit(EXIT_FAILURE);
    }

    void follow(Worker& worker) {
        constexpr auto longestLife = std::chrono::minutes(5); // some hundred times what one takes
        pollfd ready{worker.told, POLLIN, 0};
        char life = 0;
        if (poll(&ready, 1, 20) == 1) {
            if (read(worker.told, &life, 1) == 1)
                ended(worker, life == '!');
            else
                lost(worker, "died");
        } else if (Time::now() - worker.since > longestLife) {
            kill(worker.process, SIGKILL);
            lost(worker, "did not end");
        }
    }

    void ended(Worker& worker, bool broken) {
        worker.life += workers_.size();
        worker.since = Time::now();
        ++lived_;
        broken_ += broken ? 1 : 0;
        const double seconds = std::chrono::duration<double>(Time::now() - start_).count();
        std::printf("\r%llu of %llu years, %.1f a second, %llu violations ",
                    static_cast<unsigned long long>(lived_), static_cast<unsigned long long>(lives_),
                    static_cast<double>(lived_) / seconds, static_cast<unsigned long long>(broken_));
        std::fflush(stdout);
    }

    /// The process has ended: after its last life, or in the middle of one. Then another lives on.
    void lost(Worker& worker, const char* how) {
        close(worker.told);
        while (waitpid(worker.process, nullptr, 0) < 0 && errno == EINTR) {
        }
        if (worker.life < lives_) {
            const std::uint64_t seed = options_.seed + worker.life;
            std::printf(
                "\nThe life of seed %llu %s.\nRepeat it: scripts/simulate --years %g --seed %llu --one\n",
                static_cast<unsigned long long>(seed), how, yearsOf(options_, worker.life),
                static_cast<unsigned long long>(seed));
            ended(worker, true);
        }
        begin(worker, worker.life);
    }

    const Options options_;
    const std::uint64_t lives_ = livesOf(options_);
    const Time::time_point start_ = Time::now();
    std::vector<Worker> workers_;
    std::uint64_t lived_ = 0;
    std::uint64_t broken_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    const std::optional<Options> options = parse(argc, argv);
    if (!options) {
        std::fputs("Usage: simulate [--years N] [--seed S] [--one]\n", stderr);
        return 2;
    }
    if (options->one)
        return liveOne(*options);
    const std::uint64_t broken = Crowd(*options).live();
    const std::uint64_t lives = livesOf(*options);
    std::printf("\nSeeds %llu to %llu: %llu of %llu years broke a rule.\n",
                static_cast<unsigned long long>(options->seed),
                static_cast<unsigned long long>(options->seed + lives - 1),
                static_cast<unsigned long long>(broken), static_cast<unsigned long long>(lives));
    return broken == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
