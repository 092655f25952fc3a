// The panel as a window on the screen.
#pragma once

#include <QPoint>
#include <QRect>
#include <memory>
#include <optional>

#include "platform/time/clock.h"
#include "ui/kit/ui_engine.h"
#include "ui/panel/panel_view_model.h"

namespace norvane {

/// Where a panel of this size opens: beside the anchor, towards the middle of the screen, and wholly on it.
[[nodiscard]] QPoint panelPosition(QPoint anchor, QSize panel, const QRect& screen);

/// Main thread. The window is made when it is first shown, and kept.
class Panel : public QObject {
    Q_OBJECT

public:
    Panel(UiEngine& engine, PanelServices services, PanelActions actions);

    /// A click on the tray item; its position on the screen is none when unknown.
    void toggleAt(std::optional<QPoint> position);
    /// As a window like any other, for desktops without a tray.
    void showAsWindow();
    void hide();

private Q_SLOTS:
    void leave();
    void place();
    void visibleChanged(bool visible);

private:
    [[nodiscard]] bool prepare(bool attached);
    void show();

    UiEngine& engine_;
    const Clock& clock_;
    PanelViewModel model_;
    std::unique_ptr<QQuickWindow> window_;
    std::optional<QPoint> anchor_; // of the panel at the tray; none of a window like others
    std::optional<Instant> leftAt_;
};

} // namespace norvane
