// How long one look at the machine's state holds the program. Run by measurements_benchmark.sh; by hand:
// measurements_benchmark DEVICE_FOLDER DESTINATION [options of Google Benchmark]
#include <QCoreApplication>
#include <QThread>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <functional>
#include <string>

#include "platform/linux/bus/bus_probe.h"
#include "platform/linux/event_loop/qt_background.h"
#include "platform/linux/files/posix_services.h"
#include "platform/linux/measurements/linux_measurements.h"
#include "platform/linux/processes/child_command_runner.h"

namespace {

using namespace norvane;

void add(const char* name, const std::function<void()>& measure) {
    const auto repeat = [measure](benchmark::State& state) {
        for (auto _ : state)
            measure();
    };
    benchmark::RegisterBenchmark(name, repeat)->Unit(benchmark::kMillisecond)->UseRealTime();
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (argc != 3)
        return EXIT_FAILURE;
    const std::string destination = argv[2];
    BusLink bus(systemBusAddress());
    DesktopPower power(bus, "/sys/class/power_supply");
    const ChildCommandRunner runner;
    QtBackground background;
    DesktopEntries entries(background, runner, NORVANE_LIBEXEC_DIR "/desktop-entries");
    LinuxMeasurements measurements(power, entries, "/proc", argv[1]);
    const PosixFileSystem files("/");
    for (int i = 0; i < 20; ++i) { // takes what the services answer
        QCoreApplication::processEvents();
        QThread::msleep(10);
    }

    const auto readPower = [&] { benchmark::DoNotOptimize(measurements.powerState()); };
    const auto readMedia = [&] { benchmark::DoNotOptimize(measurements.mediaUse()); };
    const auto readApplications = [&] { benchmark::DoNotOptimize(measurements.runningApplications()); };
    const auto readLoad = [&] { benchmark::DoNotOptimize(measurements.loadPerCore()); };
    const auto readDestination = [&] {
        benchmark::DoNotOptimize(files.mountPointOf(destination));
        benchmark::DoNotOptimize(files.exists(destination));
    };
    add("power", readPower);
    add("media", readMedia);
    add("applications", readApplications);
    add("applications, first look", [&] {
        LinuxMeasurements anew(power, entries, "/proc", argv[1]);
        benchmark::DoNotOptimize(anew.runningApplications());
    });
    add("load", readLoad);
    add("destination", readDestination);
    add("all together", [&] {
        readPower();
        readMedia();
        readApplications();
        readLoad();
        readDestination();
    });
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
