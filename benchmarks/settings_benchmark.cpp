// What a stored setting costs to read while nobody writes, and to write.
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <thread>

#include "platform/linux/files/user_defaults_file.h"

namespace {

using norvane::PropertyList;
using norvane::PropertyListData;
using norvane::UserDefaultsFile;

/// A settings file as the program keeps it, gone at the end.
class SettingsFolder {
public:
    SettingsFolder() {
        std::string pattern = std::filesystem::current_path() / "settingsXXXXXX";
        folder_ = ::mkdtemp(pattern.data());
        UserDefaultsFile(path()).update([](PropertyList::Dictionary& entries) {
            entries["schedule"] = {PropertyListData{std::string(2000, 'x')}};
            entries["conditions"] = {PropertyListData{std::string(500, 'x')}};
            entries["lastBackup"] = {norvane::Instant(std::chrono::seconds(1714558500))};
            entries["count"] = {std::int64_t{0}};
        });
        // A file that was just written is read again each time, until its times can tell contents apart.
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    ~SettingsFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    SettingsFolder(const SettingsFolder&) = delete;
    SettingsFolder& operator=(const SettingsFolder&) = delete;

    [[nodiscard]] std::string path() const { return folder_ + "/settings.plist"; }

private:
    std::string folder_;
};

void readUnchanged(benchmark::State& state) {
    const SettingsFolder folder;
    const UserDefaultsFile settings(folder.path());
    while (state.KeepRunning())
        benchmark::DoNotOptimize(settings.integer("count"));
}
BENCHMARK(readUnchanged);

void readAfresh(benchmark::State& state) {
    const SettingsFolder folder;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(UserDefaultsFile(folder.path()).integer("count"));
}
BENCHMARK(readAfresh);

void write(benchmark::State& state) {
    const SettingsFolder folder;
    UserDefaultsFile settings(folder.path());
    std::int64_t count = 0;
    while (state.KeepRunning())
        settings.set("count", {++count});
}
BENCHMARK(write)->UseRealTime();

} // namespace

BENCHMARK_MAIN();
