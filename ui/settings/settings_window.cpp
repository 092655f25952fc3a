#include "ui/settings/settings_window.h"

#include <utility>

#include "ui/kit/view_values.h"

namespace norvane {

SettingsWindow::SettingsWindow(UiEngine& engine, NotificationCenter& notifications,
                               const SettingsServices& services, ProgramFacts facts, SettingsActions actions)
    : notifications_(notifications), model_(services, std::move(facts), std::move(actions)),
      window_(engine, "Settings/SettingsWindow", QVariant::fromValue(&model_),
              {[this] { model_.opened(); }, [this] { model_.closed(); }}, KeptWindow::Place::byTheDesktop) {
    connect(&notifications_, &NotificationCenter::posted, this, &SettingsWindow::noticed);
}

void SettingsWindow::open() {
    selectPending();
    window_.open();
}

void SettingsWindow::openOn(SettingsTab tab) {
    pendingTab_ = tab;
    Q_EMIT notifications_.posted(selectSettingsTabNotification, viewText(rawValue(tab)));
    open();
}

void SettingsWindow::noticed(const QString& name, const QVariant& object) {
    if (!window_.made() || name != selectSettingsTabNotification || object.typeId() != QMetaType::QString)
        return;
    const std::optional<SettingsTab> tab = settingsTabFrom(object.toString().toStdString());
    if (!tab)
        return;
    model_.select(*tab);
    pendingTab_.reset();
}

void SettingsWindow::selectPending() {
    if (pendingTab_)
        model_.select(*pendingTab_);
    pendingTab_.reset();
}

} // namespace norvane
