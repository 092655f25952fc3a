// A message that leaves one way on.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/ui_engine.h"

namespace norvane {

/// In the user's language.
struct AlertTexts {
    std::string message;
    std::string information; ///< Below the message, smaller.
    std::string button;
};

/// Main thread.
class AlertWindow : public QObject {
    Q_OBJECT

public:
    /// `dismissed` is called when the button was pressed or the window closed.
    AlertWindow(UiEngine& engine, const AlertTexts& texts, std::function<void()> dismissed);

    /// Shows it in front of others. False: there is no window.
    [[nodiscard]] bool open();

private Q_SLOTS:
    void visibleChanged(bool visible);

private:
    const std::function<void()> dismissed_;
    const std::unique_ptr<QQuickWindow> window_;
};

} // namespace norvane
