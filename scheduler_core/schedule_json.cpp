#include "scheduler_core/schedule_json.h"

#include "scheduler_core/json_reader.h"
#include "scheduler_core/json_writer.h"

namespace norvane {

namespace {

namespace CodingKeys {
constexpr const char* hour = "hour";
constexpr const char* minute = "minute";
constexpr const char* weekday = "weekday";
constexpr const char* times = "times";
constexpr const char* interval = "interval";
constexpr const char* dailyTimes = "dailyTimes";
constexpr const char* weekdayTimes = "weekdayTimes";
constexpr const char* days = "days";
constexpr const char* start = "start";
constexpr const char* end = "end";
constexpr const char* rules = "rules";
constexpr const char* blackouts = "blackouts";
} // namespace CodingKeys

namespace IntervalCodingKeys {
constexpr const char* hours = "hours";
}

namespace DailyTimesCodingKeys {
constexpr const char* _0 = "_0";
}

namespace WeekdayTimesCodingKeys {
constexpr const char* _0 = "_0";
}

using json_reader::required;
using InJson = json_reader::Json;
using OutJson = json_writer::Json;

template <class T, class Write>
OutJson writeList(const std::vector<T>& values, const Write& write) {
    OutJson list = OutJson::array();
    for (const T& value : values)
        list.push_back(write(value));
    return list;
}

OutJson writeTime(const TimeOfDay& time) {
    return {{CodingKeys::hour, time.hour}, {CodingKeys::minute, time.minute}};
}

OutJson writeSlot(const WeekdaySlot& slot) {
    return {{CodingKeys::weekday, rawValue(slot.weekday)},
            {CodingKeys::times, writeList(slot.times, writeTime)}};
}

struct RuleWriter {
    OutJson operator()(const IntervalRule& rule) const {
        return {{CodingKeys::interval, {{IntervalCodingKeys::hours, json_writer::number(rule.hours)}}}};
    }

    OutJson operator()(const DailyTimesRule& rule) const {
        return {{CodingKeys::dailyTimes, {{DailyTimesCodingKeys::_0, writeList(rule.times, writeTime)}}}};
    }

    OutJson operator()(const WeekdayTimesRule& rule) const {
        return {{CodingKeys::weekdayTimes, {{WeekdayTimesCodingKeys::_0, writeList(rule.slots, writeSlot)}}}};
    }
};

OutJson writeRule(const ScheduleRule& rule) { return std::visit(RuleWriter{}, rule); }

OutJson writeDays(const WeekdaySet& days) {
    OutJson list = OutJson::array();
    for (const Weekday day : Weekdays::allCases) {
        if (days.contains(day))
            list.push_back(rawValue(day));
    }
    return list;
}

OutJson writeBlackout(const BlackoutWindow& window) {
    return {{CodingKeys::days, writeDays(window.days)},
            {CodingKeys::start, writeTime(window.start)},
            {CodingKeys::end, writeTime(window.end)}};
}

template <class Read>
auto readList(const InJson& list, const Read& read) {
    std::vector<decltype(read(list))> values;
    for (const InJson& element : json_reader::array(list))
        values.push_back(read(element));
    return values;
}

Weekday readWeekday(const InJson& number) {
    const auto weekday = Weekdays::fromCalendarWeekday(json_reader::integer(number));
    if (!weekday)
        throw json_reader::Error("There is no weekday " + number.dump() + ".");
    return *weekday;
}

TimeOfDay readTime(const InJson& time) {
    return TimeOfDay::unclamped(json_reader::integer(required(time, CodingKeys::hour)),
                                json_reader::integer(required(time, CodingKeys::minute)));
}

WeekdaySlot readSlot(const InJson& slot) {
    return {.weekday = readWeekday(required(slot, CodingKeys::weekday)),
            .times = readList(required(slot, CodingKeys::times), readTime)};
}

ScheduleRule readRule(const InJson& rule) {
    const auto& cases = json_reader::object(rule);
    const auto interval = cases.find(CodingKeys::interval);
    const auto dailyTimes = cases.find(CodingKeys::dailyTimes);
    const auto weekdayTimes = cases.find(CodingKeys::weekdayTimes);
    const auto none = cases.end();
    if ((interval != none) + (dailyTimes != none) + (weekdayTimes != none) != 1)
        throw json_reader::Error("Invalid number of keys found, expected one.");
    if (interval != none)
        return IntervalRule{.hours = json_reader::number(required(*interval, IntervalCodingKeys::hours))};
    if (dailyTimes != none)
        return DailyTimesRule{.times = readList(required(*dailyTimes, DailyTimesCodingKeys::_0), readTime)};
    return WeekdayTimesRule{.slots = readList(required(*weekdayTimes, WeekdayTimesCodingKeys::_0), readSlot)};
}

BlackoutWindow readBlackout(const InJson& window) {
    BlackoutWindow result{.days = {},
                          .start = readTime(required(window, CodingKeys::start)),
                          .end = readTime(required(window, CodingKeys::end))};
    for (const InJson& day : json_reader::array(required(window, CodingKeys::days)))
        result.days.insert(readWeekday(day));
    return result;
}

} // namespace

std::optional<std::string> encodeSchedule(const Schedule& schedule) {
    return json_writer::encodeDocument([&schedule]() -> OutJson {
        return {{CodingKeys::rules, writeList(schedule.rules, writeRule)},
                {CodingKeys::blackouts, writeList(schedule.blackouts, writeBlackout)}};
    });
}

Decoded<Schedule> decodeSchedule(std::string_view text) {
    return json_reader::decodeDocument<Schedule>(text, [](const InJson& document) {
        return Schedule{.rules = readList(required(document, CodingKeys::rules), readRule),
                        .blackouts = readList(required(document, CodingKeys::blackouts), readBlackout)};
    });
}

} // namespace norvane
