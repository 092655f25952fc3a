#include "ui/kit/kept_window.h"

#include <utility>

namespace norvane {

KeptWindow::KeptWindow(UiEngine& engine, QString view, QVariant model, Appearance appearance, Place place)
    : engine_(engine), view_(std::move(view)), model_(std::move(model)), appearance_(std::move(appearance)),
      place_(place) {}

void KeptWindow::open() {
    if (!window_)
        make();
    if (!window_)
        return;
    bringToFront(*window_);
}

void KeptWindow::make() {
    window_ = engine_.makeWindow(view_, {{"model", model_}});
    if (!window_)
        return;
    QObject::connect(window_.get(), &QWindow::visibleChanged, window_.get(),
                     [this](bool visible) { visible ? appearance_.opened() : appearance_.closed(); });
    if (place_ == Place::inTheMiddle)
        placeInTheMiddle(*window_);
}

} // namespace norvane
