#include "ui/texts/schedule_summary.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace norvane {

namespace {

std::string hoursText(double hours) { return fillIn(hours == std::trunc(hours) ? "%.0f" : "%.1f", {hours}); }

std::string timeText(const TimeOfDay& time) {
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "%lld:%02lld", static_cast<long long>(time.hour),
                  static_cast<long long>(time.minute));
    return text.data();
}

struct Summary {
    const Translator& texts;

    std::string operator()(const IntervalRule& rule) const {
        if (rule.hours == 1)
            return texts.translate("Every hour");
        return fillIn(texts.translate("Every %@ hours"), {hoursText(rule.hours)});
    }

    std::string operator()(const DailyTimesRule& rule) const {
        if (rule.times.empty())
            return texts.translate("No times set");
        std::vector<TimeOfDay> times = rule.times;
        // Stored times may have more than 59 minutes.
        std::sort(times.begin(), times.end(), [](const TimeOfDay& one, const TimeOfDay& other) {
            return std::pair(one.hour, one.minute) < std::pair(other.hour, other.minute);
        });
        std::string list;
        for (const TimeOfDay& time : times)
            list += (list.empty() ? "" : ", ") + timeText(time);
        return fillIn(texts.translate("Daily at %@"), {list});
    }

    std::string operator()(const WeekdayTimesRule& rule) const {
        std::size_t count = 0;
        for (const WeekdaySlot& slot : rule.slots)
            count += slot.times.size();
        if (count == 0)
            return texts.translate("No times set");
        return fillIn(texts.translate("Weekly · %d backups/week"), {static_cast<std::int64_t>(count)});
    }
};

} // namespace

std::string scheduleSummary(const Schedule& schedule, const Translator& texts) {
    if (schedule.rules.empty())
        return texts.translate("No schedule");
    return std::visit(Summary{texts}, schedule.rules.front());
}

} // namespace norvane
