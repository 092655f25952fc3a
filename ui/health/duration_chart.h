// How long the recent backups took, as a chart: where its bars stand and what its scales say.
#pragma once

#include <string>
#include <vector>

#include "platform/formats.h"
#include "scheduler_core/calendar.h"
#include "timemachine/health_data.h"

namespace norvane {

/// Positions run from 0 (the first attempt) to 1 (the last one).
struct DurationChart {
    struct Bar {
        double position = 0;
        double minutes = 0; ///< 0 when the attempt has no duration.
        bool success = false;

        bool operator==(const Bar&) const = default;
    };
    struct DateMark {
        double position = 0;
        std::string label;

        bool operator==(const DateMark&) const = default;
    };

    /// Where the crosses of attempts without success stand, in minutes.
    static constexpr double crossMinutes = 0.4;

    double top = 0;        ///< The scale goes from 0 to here, in minutes.
    std::vector<Bar> bars; ///< One for each attempt, in their order.
    std::vector<double> minuteMarks;
    std::vector<DateMark> dateMarks;
};

/// Pure. The attempts are in chronological order.
[[nodiscard]] DurationChart durationChart(const std::vector<HealthData::Attempt>& attempts,
                                          const Calendar& calendar, const Formats& formats);

} // namespace norvane
