#include "scheduler_core/schedule_json.h"

#include <gtest/gtest.h>
#include <limits>

namespace norvane {

namespace {

using enum Weekday;

const char* const wholeDocument =
    R"({"rules":[{"interval":{"hours":6}},)"
    R"({"dailyTimes":{"_0":[{"hour":9,"minute":0},{"hour":18,"minute":30}]}},)"
    R"({"weekdayTimes":{"_0":[{"weekday":2,"times":[{"hour":12,"minute":0}]},)"
    R"({"weekday":7,"times":[{"hour":10,"minute":15},{"hour":16,"minute":0}]}]}}],)"
    R"("blackouts":[{"days":[2,3,4,5,6],"start":{"hour":22,"minute":30},"end":{"hour":6,"minute":15}}]})";

Schedule wholeSchedule() {
    return {.rules = {IntervalRule{6}, DailyTimesRule{{{9, 0}, {18, 30}}},
                      WeekdayTimesRule{{{monday, {{12, 0}}}, {saturday, {{10, 15}, {16, 0}}}}}},
            .blackouts = {{{monday, tuesday, wednesday, thursday, friday}, {22, 30}, {6, 15}}}};
}

std::string withRule(const std::string& rule) { return R"({"rules":[)" + rule + R"(],"blackouts":[]})"; }

std::string withTime(const std::string& time) { return withRule(R"({"dailyTimes":{"_0":[)" + time + "]}}"); }

std::string withDays(const std::string& days) {
    return R"({"rules":[],"blackouts":[{"days":)" + days +
           R"(,"start":{"hour":1,"minute":0},"end":{"hour":2,"minute":0}}]})";
}

TEST(ScheduleJson, WritesAndReadsEveryKindOfRule) {
    EXPECT_EQ(encodeSchedule(wholeSchedule()), wholeDocument);
    EXPECT_EQ(decodeSchedule(wholeDocument).value, wholeSchedule());
    EXPECT_EQ(encodeSchedule(Schedule::defaultSchedule()),
              R"({"rules":[{"interval":{"hours":4}}],"blackouts":[]})");
    EXPECT_EQ(encodeSchedule({.rules = {IntervalRule{1.5}}, .blackouts = {}}),
              withRule(R"({"interval":{"hours":1.5}})"));
    EXPECT_EQ(encodeSchedule({.rules = {DailyTimesRule{}, WeekdayTimesRule{}}, .blackouts = {}}),
              withRule(R"({"dailyTimes":{"_0":[]}},{"weekdayTimes":{"_0":[]}})"));
    for (const double hours :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(encodeSchedule({.rules = {IntervalRule{hours}}, .blackouts = {}}), std::nullopt);
}

TEST(ScheduleJson, AcceptsEveryWayToWriteTheSame) {
    const auto interval = [](double hours) {
        return Schedule{.rules = {IntervalRule{hours}}, .blackouts = {}};
    };
    const auto daily = [](TimeOfDay time) {
        return Schedule{.rules = {DailyTimesRule{{time}}}, .blackouts = {}};
    };
    const Schedule tuesdayNight{.rules = {}, .blackouts = {{{monday, tuesday}, {1, 0}, {2, 0}}}};
    const std::pair<std::string, Schedule> cases[] = {
        {R"( { "blackouts" : [ ] , "more" : {"rules" : 1} , "rules" : [ ] } )", Schedule{}},
        {withRule(R"({"interval":{"hours":2},"note":"x"})"), interval(2)},
        {withRule(R"({"interval":{"hours":2.5,"more":null}})"), interval(2.5)},
        {withRule(R"({"interval":{"hours":-1e3}})"), interval(-1000)},
        {withTime(R"({"hour":25,"minute":-1})"), daily(TimeOfDay::unclamped(25, -1))},
        {withTime(R"({"hour":9.0,"minute":300e-1})"), daily({9, 30})},
        {withTime(R"({"hour":-9223372036854775808,"minute":9223372036854775807})"),
         daily(TimeOfDay::unclamped(INT64_MIN, INT64_MAX))},
        {withDays("[3,2,2,3]"), tuesdayNight},
        {R"({"more":)" + std::string(100'000, '[') + std::string(100'000, ']') +
             R"(,"rules":[],"blackouts":[]})",
         Schedule{}},
    };
    for (const auto& [text, schedule] : cases) {
        const auto decoded = decodeSchedule(text);
        EXPECT_EQ(decoded.value, schedule) << text.substr(0, 100) << ": " << decoded.error;
    }
}

TEST(ScheduleJson, RefusesTheWholeDocumentForAnyFault) {
    const std::string byteOrderMark = "\xEF\xBB\xBF";
    const std::string cases[] = {
        "",
        "[]",
        R"({"rules":[]})",
        R"({"rules":{},"blackouts":[]})",
        R"({"rules":[],"blackouts":[]}x)",
        byteOrderMark + R"({"rules":[],"blackouts":[]})",
        R"({"rules":[],"blackouts":[],"rules":[]})",         // one key twice
        "{\"rules\":[],\"blackouts\":[],\"note\":\"\xFF\"}", // no UTF-8
        R"({"rules":[],"blackouts":[]})" + std::string(1, '\0'),
        withRule(R"({"interval":{"hours":"4"}})"),
        withRule(R"({"interval":{}})"),
        withRule(R"({"dailyTimes":[]})"),
        withTime(R"({"hour":9})"),
        withTime(R"({"hour":9,"minute":true})"),
        withTime(R"({"hour":9.5,"minute":0})"),
        withTime(R"({"hour":1e300,"minute":0})"),
        withTime(R"({"hour":9223372036854775808,"minute":0})"),
        withTime(R"({"hour":-9223372036854775809,"minute":0})"),
        withDays("[0]"),
        withDays("[8]"),
        withRule(R"({"weekdayTimes":{"_0":[{"weekday":1}]}})"),
    };
    for (const std::string& text : cases) {
        const auto decoded = decodeSchedule(text);
        EXPECT_FALSE(decoded.value) << text.substr(0, 100);
        EXPECT_NE(decoded.error, "") << text.substr(0, 100);
    }
    for (const char* rule : {"{}", R"({"note":"x"})", R"({"interval":{"hours":2},"dailyTimes":{"_0":[]}})"})
        EXPECT_EQ(decodeSchedule(withRule(rule)).error, "Invalid number of keys found, expected one.")
            << rule;
}

} // namespace

} // namespace norvane
