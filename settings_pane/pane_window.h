// The Time Machine pane on the screen.
#pragma once

#include <memory>

#include "settings_pane/pane_view_model.h"
#include "ui/kit/ui_engine.h"

namespace norvane {

/// Main thread.
class PaneWindow : public QObject {
    Q_OBJECT

public:
    PaneWindow(UiEngine& engine, const PaneServices& services);

    /// Shows the window, in front of others. False: there is none.
    bool open();

Q_SIGNALS:
    /// It is closed, and what was changed in it is made.
    void done();

private Q_SLOTS:
    void visibleChanged(bool visible);
    void tellWhenDone();

private:
    PaneViewModel model_;
    const std::unique_ptr<QQuickWindow> window_;
};

} // namespace norvane
