#include "ui/settings/settings_view_model.h"

#include <utility>

#include "ui/kit/view_values.h"

namespace norvane {

SettingsViewModel::SettingsViewModel(const SettingsServices& services, ProgramFacts facts,
                                     SettingsActions actions)
    : services_(services), facts_(std::move(facts)), actions_(std::move(actions)),
      general_({services.controller, services.defaults, services.loginItem, services.updater, services.timers,
                services.translator},
               actions_.relaunch, facts_.updateHost),
      schedule_(services.controller, services.timers, services.translator),
      blackouts_(services.controller, services.timers),
      conditions_(services.controller, services.timers, services.applications, services.translator),
      activity_(services.log, services.timers, services.background, services.formats, services.translator) {}

SettingsViewModel::~SettingsViewModel() = default;

void SettingsViewModel::opened() {
    open_ = true;
    ticker_ = services_.timers.repeating(1, 0, [this] { refresh(); });
    subscription_ = services_.controller.subscribe([this] { soon_.scheduleSoon([this] { refresh(); }); });
    refresh();
    tabAppears();
}

void SettingsViewModel::closed() {
    open_ = false;
    subscription_.reset();
    ticker_.reset();
    soon_.cancel();
    activity_.disappear();
    conditions_.chooser()->cancel();
}

void SettingsViewModel::setSelectedTab(int tab) {
    if (tab < 0 || static_cast<std::size_t>(tab) >= settingsTabs.size() || tab == selectedTab())
        return;
    selectedTab_ = static_cast<SettingsTab>(tab);
    activity_.disappear();
    conditions_.chooser()->cancel();
    if (open_)
        tabAppears();
    Q_EMIT selectedTabChanged();
}

void SettingsViewModel::tabAppears() {
    switch (selectedTab_) {
    case SettingsTab::general:
        return general_.load();
    case SettingsTab::schedule:
        return schedule_.load();
    case SettingsTab::blackouts:
        return blackouts_.load();
    case SettingsTab::conditions:
        return conditions_.load();
    case SettingsTab::activity:
        return activity_.appear();
    case SettingsTab::about:
        return;
    }
}

void SettingsViewModel::refresh() {
    general_.refresh();
    StatusLine status = statusLine(services_.controller.state(), services_.clock.now(), services_.formats,
                                   services_.translator);
    if (status == status_)
        return;
    status_ = std::move(status);
    Q_EMIT statusChanged();
}

QVariantList SettingsViewModel::tabs() const {
    QVariantList tabs;
    for (const SettingsTabInfo& info : settingsTabs)
        tabs.append(QVariantMap{{"name", viewText(info.rawValue)},
                                {"label", viewText(services_.translator.translate(info.label))},
                                {"symbol", viewText(info.symbol)}});
    return tabs;
}

QVariantList SettingsViewModel::weekdays() const {
    QVariantList days;
    for (int i = 0; i < 7; ++i) {
        const int bit = (services_.formats.firstWeekday() - 1 + i) % 7;
        days.append(QVariantMap{{"bit", bit},
                                {"symbol", viewText(services_.formats.weekdaySymbol(bit + 1))},
                                {"name", viewText(services_.formats.weekdayName(bit + 1))}});
    }
    return days;
}

QStringList SettingsViewModel::dayHalves() const {
    return {viewText(services_.formats.dayHalf(false)), viewText(services_.formats.dayHalf(true))};
}

QString SettingsViewModel::version() const {
    return facts_.version.empty() ? "dev" : viewText(facts_.version);
}

QString SettingsViewModel::versionText() const {
    return viewText(services_.translator.translate("Version ")) + version();
}

QString SettingsViewModel::websiteHost() const { return viewText(facts_.website).section("//", 1); }

void SettingsViewModel::openWebsite(const QString& path) {
    services_.workspace.openUrl(facts_.website + path.toStdString());
}

} // namespace norvane
