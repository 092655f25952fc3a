#include "ui/settings/tabs/schedule_settings.h"

#include <algorithm>
#include <utility>

#include "ui/kit/view_values.h"
#include "ui/settings/tabs/schedule_values.h"
#include "ui/settings/tabs/settings_delay.h"

namespace norvane {

namespace {

constexpr TimeOfDay newTime{9, 0};

template <class Item>
bool has(const std::vector<Item>& items, int position) {
    return position >= 0 && static_cast<std::size_t>(position) < items.size();
}

} // namespace

ScheduleSettings::ScheduleSettings(BackupController& controller, Timers& timers, const Translator& texts)
    : controller_(controller), texts_(texts), debouncer_(timers) {
    show();
}

void ScheduleSettings::load() {
    if (debouncer_.pending())
        return;
    loaded_ = true;
    take(withRuleOf(controller_.state().schedule, edit_));
}

void ScheduleSettings::setMode(int mode) {
    ScheduleEdit edit = edit_;
    edit.mode = static_cast<ScheduleEdit::Mode>(std::clamp<int>(mode, Interval, Weekly));
    take(std::move(edit));
}

QStringList ScheduleSettings::modes() const {
    QStringList modes;
    for (const char* english : {"Fixed Interval", "Daily Times", "Weekly"})
        modes.append(viewText(texts_.translate(english)));
    return modes;
}

void ScheduleSettings::setHours(double hours) {
    ScheduleEdit edit = edit_;
    edit.hours = hours;
    take(std::move(edit));
}

QString ScheduleSettings::hoursText() const { return norvane::hoursText(edit_.hours, texts_); }

void ScheduleSettings::setTime(int position, int time) {
    ScheduleEdit edit = edit_;
    if (has(edit.times, position))
        edit.times[static_cast<std::size_t>(position)] = timeOfView(time);
    take(std::move(edit));
}

void ScheduleSettings::addTime() {
    ScheduleEdit edit = edit_;
    edit.times.push_back(newTime);
    take(std::move(edit));
}

void ScheduleSettings::removeTime(int position) {
    ScheduleEdit edit = edit_;
    if (has(edit.times, position))
        edit.times.erase(edit.times.begin() + position);
    take(std::move(edit));
}

void ScheduleSettings::setRowDays(int position, int days) {
    ScheduleEdit edit = edit_;
    if (has(edit.weeklyRows, position))
        edit.weeklyRows[static_cast<std::size_t>(position)].days = daysOfView(days);
    take(std::move(edit));
}

void ScheduleSettings::setRowTime(int position, int time) {
    ScheduleEdit edit = edit_;
    if (has(edit.weeklyRows, position))
        edit.weeklyRows[static_cast<std::size_t>(position)].time = timeOfView(time);
    take(std::move(edit));
}

void ScheduleSettings::addRow() {
    ScheduleEdit edit = edit_;
    edit.weeklyRows.push_back({everyDay, newTime});
    take(std::move(edit));
}

void ScheduleSettings::removeRow(int position) {
    ScheduleEdit edit = edit_;
    if (has(edit.weeklyRows, position))
        edit.weeklyRows.erase(edit.weeklyRows.begin() + position);
    take(std::move(edit));
}

void ScheduleSettings::take(ScheduleEdit edit) {
    if (edit == edit_)
        return;
    edit_ = std::move(edit);
    show();
    if (loaded_)
        debouncer_.scheduleAfter(settingsDelaySeconds, [this] { save(); });
}

void ScheduleSettings::show() {
    QList<QVariantMap> times;
    for (const TimeOfDay& time : edit_.times)
        times.append({{"time", viewTime(time)}});
    times_.set(times);
    QList<QVariantMap> rows;
    for (const WeeklyRow& row : edit_.weeklyRows)
        rows.append({{"days", viewDays(row.days)}, {"time", viewTime(row.time)}});
    weeklyRows_.set(rows);
    Q_EMIT changed();
}

void ScheduleSettings::save() {
    controller_.setSchedule({{ruleOf(edit_)}, controller_.state().schedule.blackouts});
}

} // namespace norvane
