#include "platform/linux/measurements/linux_measurements.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <unistd.h>
#include <utility>

#include "platform/linux/files/program_search.h"
#include "platform/linux/measurements/capture_devices.h"
#include "platform/linux/measurements/pipewire_media.h"
#include "platform/linux/measurements/pulse_recording.h"

namespace norvane {

namespace {

// With 60 milliseconds for the power and twice 50 for the destination, which is looked at again before a
// backup starts, the main thread is held for less than half a second when all of them hang at once.
constexpr std::chrono::milliseconds serverLimit{60};
constexpr std::chrono::milliseconds processesLimit{80};

} // namespace

LinuxMeasurements::LinuxMeasurements(DesktopPower& power, DesktopEntries& entries, std::string procFolder,
                                     const std::string& deviceFolder)
    : power_(power), entries_(entries), procFolder_(std::move(procFolder)),
      videoDevices_(procFolder_, deviceFolder) {}

MediaUse LinuxMeasurements::mediaUse() {
    MediaUse use = pipeWireMediaUse(serverLimit);
    use.camera = use.camera || videoDevices_.inUse(std::chrono::steady_clock::now() + processesLimit);
    if (use.camera)
        return use;
    use.microphone = use.microphone || pulseRecordsMicrophone(serverLimit) || soundCardCaptures(procFolder_);
    return use;
}

std::optional<double> LinuxMeasurements::loadPerCore() {
    std::array<double, 3> averages{};
    if (getloadavg(averages.data(), static_cast<int>(averages.size())) < 1)
        return std::nullopt;
    return averages[0] / static_cast<double>(std::max(sysconf(_SC_NPROCESSORS_ONLN), 1L));
}

std::set<std::string> LinuxMeasurements::runningApplications() {
    std::set<std::string> applications = running_.now(procFolder_, entries_.known(), searchPathOfProcess(),
                                                      std::chrono::steady_clock::now() + processesLimit);
    entries_.refresh(); // for the next look
    return applications;
}

} // namespace norvane
