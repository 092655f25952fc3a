// The machine's present state on Linux.
#pragma once

#include "platform/condition_measurements.h"
#include "platform/linux/applications/desktop_entries.h"
#include "platform/linux/applications/running_applications.h"
#include "platform/linux/measurements/capture_devices.h"
#include "platform/linux/measurements/desktop_power.h"

namespace norvane {

/// Holds the caller for some 15 milliseconds beside 300 processes, and for at most 340 when every service
/// hangs. Main thread.
class LinuxMeasurements final : public ConditionMeasurements {
public:
    /// `procFolder` and `deviceFolder`: /proc and /dev. The others must outlive this object.
    LinuxMeasurements(DesktopPower& power, DesktopEntries& entries, std::string procFolder,
                      const std::string& deviceFolder);

    [[nodiscard]] PowerState powerState() override { return power_.state(); }
    [[nodiscard]] MediaUse mediaUse() override;
    [[nodiscard]] std::optional<double> loadPerCore() override;
    [[nodiscard]] std::set<std::string> runningApplications() override;

private:
    DesktopPower& power_;
    DesktopEntries& entries_;
    RunningApplications running_;
    const std::string procFolder_;
    VideoDevices videoDevices_;
};

} // namespace norvane
