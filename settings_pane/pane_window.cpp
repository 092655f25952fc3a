#include "settings_pane/pane_window.h"

namespace norvane {

PaneWindow::PaneWindow(UiEngine& engine, const PaneServices& services)
    : model_(services),
      window_(engine.makeWindow("SettingsPane/TimeMachinePane", {{"model", QVariant::fromValue(&model_)}})) {
    if (!window_)
        return;
    connect(window_.get(), &QWindow::visibleChanged, this, &PaneWindow::visibleChanged);
    connect(&model_, &PaneViewModel::changed, this, &PaneWindow::tellWhenDone);
}

bool PaneWindow::open() {
    if (!window_)
        return false;
    bringToFront(*window_);
    return true;
}

void PaneWindow::visibleChanged(bool visible) {
    visible ? model_.opened() : model_.closed();
    tellWhenDone();
}

void PaneWindow::tellWhenDone() {
    if (!window_->isVisible() && !model_.changing())
        Q_EMIT done();
}

} // namespace norvane
