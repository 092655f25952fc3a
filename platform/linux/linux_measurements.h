// The machine's present state, as far as the C library tells it.
#pragma once

#include "platform/condition_measurements.h"

namespace norvane {

/// Load only: power, capture devices and running applications are not measured yet and defer nothing.
class LinuxMeasurements final : public ConditionMeasurements {
public:
    [[nodiscard]] PowerState powerState() override { return {}; }
    [[nodiscard]] bool cameraInUse() override { return false; }
    [[nodiscard]] bool microphoneInUse() override { return false; }
    [[nodiscard]] bool screenIsShared() override { return false; }
    [[nodiscard]] std::optional<double> loadPerCore() override;
    [[nodiscard]] std::set<std::string> runningApplications() override { return {}; }
};

} // namespace norvane
