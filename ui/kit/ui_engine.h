// What all windows share: the QML engine, the theme, the symbols and the texts.
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>
#include <QVariantMap>
#include <memory>

#include "platform/translator.h"
#include "ui/kit/theme.h"
#include "ui/kit/ui_texts.h"

namespace norvane {

/// Before it is first shown: in the middle of its screen, where the desktop lets programs choose.
void placeInTheMiddle(QWindow& window);
/// Shows the window, in front of others and with the keyboard.
void bringToFront(QWindow& window);

/// Main thread. The engine comes with the first window: a program that shows none has none.
class UiEngine {
public:
    UiEngine(Theme& theme, const Translator& translator);

    /// A hidden window with these properties; null when it cannot be made. `view`: its file below the modules
    /// "Norvane", as "Health/HealthWindow".
    [[nodiscard]] std::unique_ptr<QQuickWindow> makeWindow(const QString& view,
                                                           const QVariantMap& properties);

private:
    [[nodiscard]] QQmlEngine& engine();

    Theme& theme_;
    UiTexts texts_;
    std::unique_ptr<QQmlEngine> engine_;
};

} // namespace norvane
