#include "ui/settings/tabs/conditions_settings.h"

#include <utility>

#include "ui/kit/view_values.h"
#include "ui/settings/tabs/conditions_edit.h"
#include "ui/settings/tabs/schedule_values.h"
#include "ui/settings/tabs/settings_delay.h"

namespace norvane {

ConditionsSettings::ConditionsSettings(BackupController& controller, Timers& timers,
                                       InstalledApplications& applications, const Translator& texts)
    : controller_(controller), texts_(texts), debouncer_(timers), chooser_(applications) {
    connect(&chooser_, &ApplicationChooser::accepted, this, &ConditionsSettings::addApps);
}

void ConditionsSettings::load() {
    if (debouncer_.pending())
        return;
    loaded_ = true;
    take(controller_.state().conditions);
}

template <class Value>
void ConditionsSettings::set(Value ConditionsConfig::*field, Value value) {
    ConditionsConfig config = config_;
    config.*field = value;
    take(std::move(config));
}

void ConditionsSettings::setDeferWhileCameraOrMicInUse(bool defer) {
    set(&ConditionsConfig::deferWhileCameraOrMicInUse, defer);
}

double ConditionsSettings::busy() const { return busyValue(config_); }

void ConditionsSettings::setBusy(double value) {
    ConditionsConfig config = config_;
    setBusyValue(config, value);
    take(std::move(config));
}

QVariantList ConditionsSettings::busyChoices() const { return viewChoices(norvane::busyChoices, texts_); }

bool ConditionsSettings::waitForDisk() const { return waitsForDisk(config_); }

void ConditionsSettings::setWaitForDisk(bool wait) {
    ConditionsConfig config = config_;
    setWaitsForDisk(config, wait);
    take(std::move(config));
}

void ConditionsSettings::setRequireAC(bool require) { set(&ConditionsConfig::requireAC, require); }

void ConditionsSettings::setDeferInLowPowerMode(bool defer) {
    set(&ConditionsConfig::deferInLowPowerMode, defer);
}

void ConditionsSettings::setMinBatteryPercent(double percent) {
    set(&ConditionsConfig::minBatteryPercent, static_cast<std::int64_t>(percent));
}

QVariantList ConditionsSettings::batteryChoices() const {
    return viewChoices(norvane::batteryChoices, texts_);
}

void ConditionsSettings::setMaxDeferralHours(double hours) {
    set(&ConditionsConfig::maxDeferralHours, hours);
}

QString ConditionsSettings::maxDeferralText() const { return hoursText(config_.maxDeferralHours, texts_); }

void ConditionsSettings::setRecheckMinutes(double minutes) {
    set(&ConditionsConfig::recheckMinutes, static_cast<std::int64_t>(minutes));
}

QVariantList ConditionsSettings::recheckChoices() const {
    return viewChoices(norvane::recheckChoices, texts_);
}

void ConditionsSettings::removeApp(int position) {
    ConditionsConfig config = config_;
    removeApplicationAt(config, static_cast<std::size_t>(position)); // one below 0 is past the end
    take(std::move(config));
}

void ConditionsSettings::addApps(const std::vector<InstalledApplication>& applications) {
    ConditionsConfig config = config_;
    for (const InstalledApplication& application : applications)
        addApplication(config, application);
    take(std::move(config));
}

void ConditionsSettings::take(ConditionsConfig config) {
    if (config == config_)
        return;
    config_ = std::move(config);
    QList<QVariantMap> apps;
    for (const BlockedApp& app : config_.blockedApps)
        apps.append({{"name", viewText(app.name)}, {"bundleID", viewText(app.bundleID)}});
    blockedApps_.set(apps);
    Q_EMIT changed();
    if (loaded_)
        debouncer_.scheduleAfter(settingsDelaySeconds, [this] { controller_.setConditions(config_); });
}

} // namespace norvane
