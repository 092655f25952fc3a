#include "ui/alert_window.h"

#include <utility>

#include "ui/view_values.h"

namespace norvane {

AlertWindow::AlertWindow(UiEngine& engine, const AlertTexts& texts, std::function<void()> dismissed)
    : dismissed_(std::move(dismissed)),
      window_(engine.makeWindow("AlertWindow", {{"message", viewText(texts.message)},
                                                {"information", viewText(texts.information)},
                                                {"button", viewText(texts.button)}})) {
    if (!window_)
        return;
    placeInTheMiddle(*window_);
    connect(window_.get(), &QWindow::visibleChanged, this, &AlertWindow::visibleChanged);
}

bool AlertWindow::open() {
    if (!window_)
        return false;
    bringToFront(*window_);
    return true;
}

void AlertWindow::visibleChanged(bool visible) {
    if (!visible)
        dismissed_();
}

} // namespace norvane
