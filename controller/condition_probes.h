// Why a scheduled backup must wait.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "controller/destination_folder.h"
#include "platform/condition_measurements.h"
#include "platform/file_system.h"
#include "scheduler_core/conditions_config.h"

namespace norvane {

class ConditionProbes {
public:
    ConditionProbes(ConditionMeasurements& measurements, const FileSystem& files)
        : measurements_(measurements), files_(files) {}

    /// The reasons that hold now, in a fixed order, as the user reads them; empty when the backup may start.
    /// Only what the conditions ask for is measured. Main thread.
    [[nodiscard]] std::vector<std::string>
    deferralReasons(const ConditionsConfig& conditions,
                    const std::optional<DestinationFolder>& destinationMountPoint);

private:
    void addPowerReasons(const ConditionsConfig& conditions, std::vector<std::string>& reasons);
    void addActivityReason(std::vector<std::string>& reasons);
    void addApplicationReasons(const std::vector<BlockedApp>& apps, std::vector<std::string>& reasons);
    void addLoadReason(double maxLoadPerCore, std::vector<std::string>& reasons);

    ConditionMeasurements& measurements_;
    const FileSystem& files_;
};

} // namespace norvane
