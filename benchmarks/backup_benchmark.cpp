// A first and an unchanged backup of 20,000 files by tmutil, beside bare rsync with the same options. The
// runs alternate, so that whatever slows the machine slows both; medians and their ratios are printed. Both
// sides include the time until the disk has it all (syncfs); the bare side's share of it is printed as well.
//
// Usage: backup_benchmark [rounds]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

#include "platform/linux/files/file_descriptor.h"
#include "tests/support/backup_sandbox.h"
#include "timemachine_linux/rsync/rsync_command.h"

namespace {

namespace fs = std::filesystem;
using namespace norvane;

constexpr int folders = 200;
constexpr int filesPerFolder = 100;
constexpr int meanFileBytes = 12000; // 240 MB in all

double secondsOf(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void makeTree(const std::string& tree) {
    std::mt19937 random(1);
    std::string noise(2 * meanFileBytes, '\0');
    for (char& byte : noise)
        byte = static_cast<char>(random());
    for (int folder = 0; folder < folders; ++folder) {
        const std::string path = tree + "/d" + std::to_string(folder);
        fs::create_directory(path);
        for (int file = 0; file < filesPerFolder; ++file)
            writeFile(path + "/f" + std::to_string(file), noise.substr(random() % (2 * meanFileBytes)));
    }
}

struct Samples {
    std::vector<double> rsync;
    std::vector<double> rsyncSync;
    std::vector<double> tmutil;
};

void report(const char* name, const Samples& samples) {
    std::printf("%-10s rsync %.3f s (syncfs %.3f s of it), tmutil %.3f s, ratio %.2f\n", name,
                median(samples.rsync), median(samples.rsyncSync), median(samples.tmutil),
                median(samples.tmutil) / median(samples.rsync));
}

class Benchmark {
public:
    explicit Benchmark(int rounds) : rounds_(rounds) {
        makeTree(box_.tree());
        writeFile(box_.in("filter"), "");
        fs::create_directory(box_.in("bare"));
        disk_.reset(::open(box_.in("bare").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        (void)box_.tmutil({"setdestination", box_.destination()});
        ::syncfs(disk_.get());
    }

    int run() {
        for (int round = 0; round < rounds_; ++round) {
            bare("1", std::nullopt, first_);
            throughTmutil(first_);
            bare("2", box_.in("bare/1"), unchanged_);
            throughTmutil(unchanged_);
            const std::vector<std::string> made = box_.snapshots();
            if (made.size() != 2)
                return EXIT_FAILURE;
            // Put aside, not removed: ext4 is slow to make files where some were removed minutes ago.
            const std::string aside = box_.in("aside" + std::to_string(round));
            fs::create_directory(aside);
            fs::rename(fs::path(made[0]).parent_path(), aside + "/tmutil");
            fs::rename(box_.in("bare"), aside + "/bare");
            fs::create_directory(box_.in("bare"));
            ::syncfs(disk_.get());
        }
        report("first", first_);
        report("unchanged", unchanged_);
        return EXIT_SUCCESS;
    }

private:
    void bare(const std::string& name, const std::optional<std::string>& previous, Samples& samples) {
        CopyJob job;
        job.place.sources = {box_.tree()};
        job.target = box_.in("bare/" + name);
        job.previousSnapshot = previous;
        job.filterFile = box_.in("filter");
        std::vector<std::string> command = rsyncArguments(job);
        command.insert(command.begin(), "rsync");
        fs::create_directory(job.target);
        const double copying = secondsOf([&] { (void)box_.run(command); });
        const double syncing = secondsOf([&] { ::syncfs(disk_.get()); });
        samples.rsync.push_back(copying + syncing);
        samples.rsyncSync.push_back(syncing);
    }

    void throughTmutil(Samples& samples) {
        samples.tmutil.push_back(secondsOf([&] { (void)box_.tmutil({"startbackup", "--block"}); }));
    }

    const int rounds_;
    BackupSandbox box_;
    FileDescriptor disk_;
    Samples first_;
    Samples unchanged_;
};

} // namespace

int main(int argc, char** argv) {
    constexpr int usualRounds = 7;
    const int rounds =
        argc > 1 ? std::atoi(argv[1]) : usualRounds; // NOLINT(cert-err34-c): 0 is refused below
    return Benchmark(std::max(rounds, 1)).run();
}
