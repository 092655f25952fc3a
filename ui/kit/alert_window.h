// A message with a button, and sometimes a way around it.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "ui/kit/ui_engine.h"

namespace norvane {

/// In the user's language.
struct AlertTexts {
    std::string message;
    std::string information;    ///< Below the message, smaller.
    std::string button;         ///< The prominent one.
    std::string otherwise = {}; ///< The button that only closes; empty: there is none.
    std::string symbol = "clock.badge.exclamationmark"; ///< Of ui/kit/symbols.

    bool operator==(const AlertTexts&) const = default;
};

/// What the view "AlertWindow" is made of.
[[nodiscard]] QVariantMap alertProperties(const AlertTexts& texts);

/// Main thread.
class AlertWindow : public QObject {
    Q_OBJECT

public:
    /// `pressed`: the prominent button was pressed, which closes the window; false: it was closed otherwise.
    using Closed = std::function<void(bool pressed)>;

    AlertWindow(UiEngine& engine, const AlertTexts& texts, Closed closed);
    /// Closes it without a word.
    ~AlertWindow() override;

    /// Shows it in front of others. False: there is no window.
    [[nodiscard]] bool open();

private Q_SLOTS:
    void visibleChanged(bool visible);

private:
    const Closed closed_;
    const std::unique_ptr<QQuickWindow> window_;
};

} // namespace norvane
