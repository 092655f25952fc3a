#include "fuzz/fuzz.h"
#include "scheduler_core/calendar.h"
#include "scheduler_core/schedule_json.h"
#include "scheduler_core/scheduling_engine.h"

namespace norvane {

namespace {

void checkNextFire(const Schedule& schedule, std::optional<Instant> lastBackup, Instant now) {
    static const Calendar calendar = Calendar::inZone("Europe/Berlin").value_or(Calendar::current());
    const NextFire next = SchedulingEngine::nextFire(schedule, lastBackup, now, calendar);
    if (!next.date)
        return;
    check(*next.date >= now, "The next backup is not in the past.");
    for (const BlackoutWindow& window : schedule.blackouts)
        check(!window.endOfOccurrenceContaining(*next.date, calendar), "The next backup is in no blackout.");
}

} // namespace

void fuzz(std::string_view input) {
    const Decoded<Schedule> decoded = decodeSchedule(input);
    check(decoded.value.has_value() == decoded.error.empty(), "There is a value or a reason why not.");
    if (!decoded.value)
        return;
    const auto written = encodeSchedule(*decoded.value);
    check(written.has_value(), "What was read can be written.");
    check(decodeSchedule(*written).value == decoded.value, "What is written reads back.");
    for (const BlackoutWindow& window : decoded.value->blackouts)
        check(window.start != window.end || window.durationMinutes() == 0, "Equal times are no blackout.");
    // On the eve of a clock change, and at the ends of the range.
    const Instant eve{std::chrono::seconds(1'711'839'600)};
    checkNextFire(*decoded.value, std::nullopt, eve);
    checkNextFire(*decoded.value, eve - std::chrono::hours(5), eve);
    checkNextFire(*decoded.value, distantFuture, distantPast);
    checkNextFire(*decoded.value, distantPast, distantFuture);
}

} // namespace norvane
