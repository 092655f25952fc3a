// A window over one model: made when it is first shown, hidden when it is closed, and kept.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "ui/kit/ui_engine.h"

namespace norvane {

/// Main thread only.
class KeptWindow {
public:
    /// What the model does when the window appears and when it is gone.
    struct Appearance {
        std::function<void()> opened;
        std::function<void()> closed;
    };

    /// Where it first appears, where the desktop lets programs choose.
    enum class Place { inTheMiddle, byTheDesktop };

    /// `view`: see UiEngine; it has a property "model". The model must outlive the window.
    KeptWindow(UiEngine& engine, QString view, QVariant model, Appearance appearance,
               Place place = Place::inTheMiddle);

    /// Shows it, in front of others.
    void open();
    [[nodiscard]] bool made() const { return window_ != nullptr; }

private:
    void make();

    UiEngine& engine_;
    const QString view_;
    const QVariant model_;
    const Appearance appearance_;
    const Place place_;
    std::unique_ptr<QQuickWindow> window_;
};

} // namespace norvane
