#include "ui/kit/alert_window.h"

#include <utility>

#include "ui/kit/view_values.h"

namespace norvane {

QVariantMap alertProperties(const AlertTexts& texts) {
    return {{"message", viewText(texts.message)},
            {"information", viewText(texts.information)},
            {"button", viewText(texts.button)},
            {"otherwise", viewText(texts.otherwise)},
            {"symbol", viewText(texts.symbol)}};
}

AlertWindow::AlertWindow(UiEngine& engine, const AlertTexts& texts, Closed closed)
    : closed_(std::move(closed)),
      window_(engine.makeWindow("Kit/windows/AlertWindow", alertProperties(texts))) {
    if (!window_)
        return;
    placeInTheMiddle(*window_);
    connect(window_.get(), &QWindow::visibleChanged, this, &AlertWindow::visibleChanged);
}

AlertWindow::~AlertWindow() {
    if (window_)
        window_->disconnect(this);
}

bool AlertWindow::open() {
    if (!window_)
        return false;
    bringToFront(*window_);
    return true;
}

void AlertWindow::visibleChanged(bool visible) {
    if (!visible)
        closed_(window_->property("pressed").toBool());
}

} // namespace norvane
