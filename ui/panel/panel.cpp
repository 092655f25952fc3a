#include "ui/panel/panel.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

namespace norvane {

namespace {

constexpr int gap = 4;

const QScreen* screenWith(QPoint position) {
    const QScreen* screen = QGuiApplication::screenAt(position);
    return screen ? screen : QGuiApplication::primaryScreen();
}

/// The corner of the screen that the pointer is nearest to.
QPoint cornerAt(QPoint pointer, const QRect& screen) {
    return {pointer.x() < screen.center().x() ? screen.left() : screen.right(),
            pointer.y() < screen.center().y() ? screen.top() : screen.bottom()};
}

} // namespace

QPoint panelPosition(QPoint anchor, QSize panel, const QRect& screen) {
    const bool below = anchor.y() < screen.center().y();
    const int x = anchor.x() - panel.width() / 2;
    const int y = below ? anchor.y() + gap : anchor.y() - gap - panel.height();
    return {std::clamp(x, screen.left(), std::max(screen.left(), screen.right() + 1 - panel.width())),
            std::clamp(y, screen.top(), std::max(screen.top(), screen.bottom() + 1 - panel.height()))};
}

Panel::Panel(UiEngine& engine, PanelServices services, PanelActions actions)
    : engine_(engine), clock_(services.clock), model_(services, std::move(actions)) {}

void Panel::toggleAt(std::optional<QPoint> position) {
    // The click that takes the focus away from the panel is the click that should close it.
    constexpr double sameClickSeconds = 0.3;
    const bool justLeft = leftAt_ && std::abs(secondsBetween(*leftAt_, clock_.now())) < sameClickSeconds;
    leftAt_.reset();
    if (justLeft || (window_ && window_->isVisible()))
        return hide();
    if (!prepare(true))
        return;
    const QPoint pointer = position.value_or(QCursor::pos());
    const QRect screen = screenWith(pointer)->availableGeometry();
    anchor_ = position ? pointer : cornerAt(pointer, screen);
    place();
    show();
}

void Panel::showAsWindow() {
    if (window_ && window_->isVisible())
        return window_->requestActivate();
    anchor_.reset();
    if (prepare(false))
        show();
}

void Panel::hide() {
    if (window_)
        window_->hide();
}

/// Also when its height has changed: it grows away from the tray, and not out of the screen.
void Panel::place() {
    if (anchor_)
        window_->setPosition(
            panelPosition(*anchor_, window_->size(), screenWith(*anchor_)->availableGeometry()));
}

void Panel::visibleChanged(bool visible) {
    if (!visible)
        model_.closed();
}

void Panel::leave() {
    if (!window_->isVisible())
        return; // the focus goes with a window that is hidden
    leftAt_ = clock_.now();
    hide();
}

bool Panel::prepare(bool attached) {
    model_.opened(); // first, so that the window has its size
    if (!window_) {
        window_ = engine_.makeWindow("Panel/PanelWindow", {{"model", QVariant::fromValue(&model_)}});
        if (window_) {
            connect(window_.get(), SIGNAL(left()), this, SLOT(leave()));
            connect(window_.get(), &QWindow::heightChanged, this, &Panel::place);
            connect(window_.get(), &QWindow::visibleChanged, this, &Panel::visibleChanged);
        }
    }
    if (window_)
        window_->setProperty("attached", attached);
    return window_ != nullptr;
}

void Panel::show() { bringToFront(*window_); }

} // namespace norvane
