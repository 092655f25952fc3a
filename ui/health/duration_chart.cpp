#include "ui/health/duration_chart.h"

#include <algorithm>
#include <array>

namespace norvane {

namespace {

using DateMark = DurationChart::DateMark;

constexpr double hourSeconds = 3600;
constexpr int dayHours = 24;
constexpr int maxSteps = 5; // of a scale, so that its labels find room

double scaleTop(const std::vector<DurationChart::Bar>& bars) {
    constexpr double headroom = 1.15;
    constexpr double smallest = 5;
    constexpr double largest = 180;
    if (bars.empty())
        return headroom * smallest;
    const auto longest = std::max_element(bars.begin(), bars.end(), [](const auto& one, const auto& other) {
        return one.minutes < other.minutes;
    });
    return std::min(std::max(headroom * longest->minutes, smallest), largest);
}

std::vector<double> minuteMarks(double top) {
    constexpr std::array<double, 7> steps = {1, 2, 5, 10, 15, 30, 60};
    const auto fitting =
        std::find_if(steps.begin(), steps.end() - 1, [top](double step) { return top / step <= maxSteps; });
    std::vector<double> marks;
    for (int i = 0; i * *fitting <= top; ++i)
        marks.push_back(i * *fitting);
    return marks;
}

/// The dates between the first and the last attempt, on a scale of round hours or of days.
class DateScale {
public:
    DateScale(Instant first, Instant last, const Calendar& calendar, const Formats& formats)
        : first_(first), last_(last), calendar_(calendar), formats_(formats) {}

    [[nodiscard]] double position(Instant instant) const {
        constexpr double middle = 0.5;
        return last_ > first_ ? secondsBetween(first_, instant) / secondsBetween(first_, last_) : middle;
    }

    [[nodiscard]] std::vector<DateMark> marks() const {
        constexpr std::array<int, 11> stepHours = {1, 2, 3, 6, 12, 24, 48, 72, 120, 168, 240};
        const double hours = secondsBetween(first_, last_) / hourSeconds;
        const auto* const step = std::find_if(stepHours.begin(), stepHours.end(),
                                              [hours](int length) { return hours / length <= maxSteps; });
        std::vector<DateMark> marks;
        if (step != stepHours.end() && hours > 0)
            addEvery(*step, marks);
        if (marks.empty())
            marks.push_back({position(first_), formats_.monthAndDay(first_)});
        return marks;
    }

private:
    void addEvery(int stepHours, std::vector<DateMark>& marks) const {
        std::optional<Instant> day = calendar_.startOfDay(first_);
        while (day && *day <= last_) {
            for (int hour = 0; hour < dayHours; hour += stepHours)
                add(hour == 0 ? day : calendar_.settingTime(hour, 0, *day), hour == 0, marks);
            day = calendar_.addingDays(std::max(stepHours / dayHours, 1), *day);
        }
    }

    void add(std::optional<Instant> instant, bool startsDay, std::vector<DateMark>& marks) const {
        if (instant && *instant >= first_ && *instant <= last_)
            marks.push_back({position(*instant),
                             startsDay ? formats_.monthAndDay(*instant) : formats_.shortTime(*instant)});
    }

    const Instant first_;
    const Instant last_;
    const Calendar& calendar_;
    const Formats& formats_;
};

} // namespace

DurationChart durationChart(const std::vector<HealthData::Attempt>& attempts, const Calendar& calendar,
                            const Formats& formats) {
    DurationChart chart;
    if (!attempts.empty()) {
        constexpr double secondsPerMinute = 60;
        const DateScale scale(attempts.front().date, attempts.back().date, calendar, formats);
        for (const HealthData::Attempt& attempt : attempts)
            chart.bars.push_back({scale.position(attempt.date),
                                  attempt.duration.value_or(0) / secondsPerMinute, attempt.success});
        chart.dateMarks = scale.marks();
    }
    chart.top = scaleTop(chart.bars);
    chart.minuteMarks = minuteMarks(chart.top);
    return chart;
}

} // namespace norvane
