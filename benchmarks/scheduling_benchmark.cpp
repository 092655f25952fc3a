// What planning the next backup costs.

#include <benchmark/benchmark.h>

#include "scheduler_core/scheduling_engine.h"

namespace norvane {

namespace {

using enum Weekday;

const Instant now =
    Instant(std::chrono::sys_days(std::chrono::year(2024) / 6 / 4)) + std::chrono::hours(10); // Tuesday
const Calendar berlin = Calendar::inZone("Europe/Berlin").value();

void fire(benchmark::State& state, const Schedule& schedule) {
    const Instant lastBackup = now - std::chrono::hours(1);
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(SchedulingEngine::nextFire(schedule, lastBackup, now, berlin));
}

void defaultSchedule(benchmark::State& state) { fire(state, Schedule::defaultSchedule()); }
BENCHMARK(defaultSchedule);

const WeekdaySet workdays{monday, tuesday, wednesday, thursday, friday};
const WeekdaySet everyDay{sunday, monday, tuesday, wednesday, thursday, friday, saturday};

void fiveSlotsFiveBlackouts(benchmark::State& state) {
    const std::vector<TimeOfDay> times = {{9, 0}, {12, 30}};
    fire(state,
         {.rules = {WeekdayTimesRule{
              {{monday, times}, {tuesday, times}, {wednesday, times}, {thursday, times}, {friday, times}}}},
          .blackouts = {{workdays, {22, 0}, {6, 0}},
                        {workdays, {12, 0}, {13, 0}},
                        {{saturday, sunday}, {0, 0}, {23, 59}},
                        {{tuesday}, {13, 0}, {15, 0}},
                        {{thursday}, {16, 0}, {18, 0}}}});
}
BENCHMARK(fiveSlotsFiveBlackouts);

void hundredRounds(benchmark::State& state) {
    fire(state, {.rules = {IntervalRule{1}},
                 .blackouts = {{everyDay, {0, 0}, {5, 0}},
                               {everyDay, {5, 0}, {10, 0}},
                               {everyDay, {10, 0}, {15, 0}},
                               {everyDay, {15, 0}, {20, 0}},
                               {everyDay, {20, 0}, {0, 0}}}});
}
BENCHMARK(hundredRounds);

void currentCalendar(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(Calendar::current());
}
BENCHMARK(currentCalendar);

} // namespace

} // namespace norvane

BENCHMARK_MAIN();
