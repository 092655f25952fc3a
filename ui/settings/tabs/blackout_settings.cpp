#include "ui/settings/tabs/blackout_settings.h"

#include <utility>

#include "ui/settings/tabs/schedule_edit.h"
#include "ui/settings/tabs/schedule_values.h"
#include "ui/settings/tabs/settings_delay.h"

namespace norvane {

BlackoutSettings::BlackoutSettings(BackupController& controller, Timers& timers)
    : controller_(controller), debouncer_(timers) {}

void BlackoutSettings::load() {
    if (debouncer_.pending())
        return;
    loaded_ = true;
    take(controller_.state().schedule.blackouts);
}

void BlackoutSettings::setDays(int position, int days) {
    edit(position, [days](BlackoutWindow& window) { window.days = daysOfView(days); });
}

void BlackoutSettings::setStart(int position, int time) {
    edit(position, [time](BlackoutWindow& window) { window.start = timeOfView(time); });
}

void BlackoutSettings::setEnd(int position, int time) {
    edit(position, [time](BlackoutWindow& window) { window.end = timeOfView(time); });
}

void BlackoutSettings::add() {
    std::vector<BlackoutWindow> blackouts = blackouts_;
    blackouts.push_back({everyDay, {9, 0}, {17, 0}});
    take(std::move(blackouts));
}

void BlackoutSettings::remove(int position) {
    if (position < 0 || static_cast<std::size_t>(position) >= blackouts_.size())
        return;
    std::vector<BlackoutWindow> blackouts = blackouts_;
    blackouts.erase(blackouts.begin() + position);
    take(std::move(blackouts));
}

void BlackoutSettings::edit(int position, const std::function<void(BlackoutWindow&)>& change) {
    if (position < 0 || static_cast<std::size_t>(position) >= blackouts_.size())
        return;
    std::vector<BlackoutWindow> blackouts = blackouts_;
    change(blackouts[static_cast<std::size_t>(position)]);
    take(std::move(blackouts));
}

void BlackoutSettings::take(std::vector<BlackoutWindow> blackouts) {
    if (blackouts == blackouts_)
        return;
    blackouts_ = std::move(blackouts);
    QList<QVariantMap> rows;
    for (const BlackoutWindow& window : blackouts_)
        rows.append({{"days", viewDays(window.days)},
                     {"start", viewTime(window.start)},
                     {"end", viewTime(window.end)},
                     {"crossesMidnight", crossesMidnight(window)}});
    windows_.set(rows);
    if (loaded_)
        debouncer_.scheduleAfter(settingsDelaySeconds, [this] { save(); });
}

void BlackoutSettings::save() { controller_.setSchedule({controller_.state().schedule.rules, blackouts_}); }

} // namespace norvane
