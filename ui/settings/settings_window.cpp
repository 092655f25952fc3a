#include "ui/settings/settings_window.h"

#include <utility>

#include "ui/kit/view_values.h"

namespace norvane {

SettingsWindow::SettingsWindow(UiEngine& engine, NotificationCenter& notifications,
                               const SettingsServices& services, ProgramFacts facts, SettingsActions actions)
    : engine_(engine), notifications_(notifications), model_(services, std::move(facts), std::move(actions)) {
    connect(&notifications_, &NotificationCenter::posted, this, &SettingsWindow::noticed);
}

void SettingsWindow::open() {
    if (!window_) {
        window_ = engine_.makeWindow("Settings/SettingsWindow", {{"model", QVariant::fromValue(&model_)}});
        if (!window_)
            return;
        connect(window_.get(), &QWindow::visibleChanged, this, &SettingsWindow::visibleChanged);
    }
    selectPending();
    bringToFront(*window_);
}

void SettingsWindow::openOn(SettingsTab tab) {
    pendingTab_ = tab;
    Q_EMIT notifications_.posted(selectSettingsTabNotification, viewText(rawValue(tab)));
    open();
}

void SettingsWindow::visibleChanged(bool visible) { visible ? model_.opened() : model_.closed(); }

void SettingsWindow::noticed(const QString& name, const QVariant& object) {
    if (!window_ || name != selectSettingsTabNotification || object.typeId() != QMetaType::QString)
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
