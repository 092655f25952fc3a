// Values of the core as views take them.
#pragma once

#include <QString>
#include <QVariantMap>
#include <string_view>

#include "platform/translator.h"
#include "scheduler_core/schedule.h"

namespace norvane {

/// Minutes since midnight, within the day whatever is stored.
[[nodiscard]] inline int viewTime(const TimeOfDay& time) {
    return static_cast<int>(TimeOfDay(time.hour, time.minute).minutesSinceMidnight());
}

[[nodiscard]] inline TimeOfDay timeOfView(int minutes) { return {minutes / 60, minutes % 60}; }

/// Bit 0: Sunday.
[[nodiscard]] inline int viewDays(const WeekdaySet& days) {
    int mask = 0;
    for (const Weekday day : Weekdays::allCases)
        mask |= days.contains(day) ? 1 << (rawValue(day) - 1) : 0;
    return mask;
}

[[nodiscard]] inline WeekdaySet daysOfView(int mask) {
    WeekdaySet days;
    for (const Weekday day : Weekdays::allCases) {
        if ((mask >> (rawValue(day) - 1) & 1) != 0)
            days.insert(day);
    }
    return days;
}

inline constexpr WeekdaySet everyDay = {Weekday::sunday,    Weekday::monday,   Weekday::tuesday,
                                        Weekday::wednesday, Weekday::thursday, Weekday::friday,
                                        Weekday::saturday};

[[nodiscard]] inline QString viewText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

// Views know 64-bit integers by Qt's name alone.
[[nodiscard]] inline QVariant viewValue(std::int64_t value) { return QVariant::fromValue(qint64{value}); }
[[nodiscard]] inline QVariant viewValue(double value) { return value; }

/// What a picker offers: maps with "label" and "value".
template <class Choices>
[[nodiscard]] QVariantList viewChoices(const Choices& choices, const Translator& texts) {
    QVariantList list;
    for (const auto& choice : choices)
        list.append(QVariantMap{{"label", viewText(texts.translate(choice.label))},
                                {"value", viewValue(choice.value)}});
    return list;
}

} // namespace norvane
