// The Settings window on the screen, and how others open it on a tab.
#pragma once

#include <optional>

#include "ui/kit/kept_window.h"
#include "ui/settings/notification_center.h"
#include "ui/settings/settings_view_model.h"

namespace norvane {

/// Posted with the raw value of a tab: the open window selects it.
inline constexpr auto selectSettingsTabNotification = "NorvaneSelectSettingsTab";

/// Main thread. The window is made when it is first shown, and kept; its tab stays selected.
class SettingsWindow : public QObject {
    Q_OBJECT

public:
    SettingsWindow(UiEngine& engine, NotificationCenter& notifications, const SettingsServices& services,
                   ProgramFacts facts, SettingsActions actions);

    /// Shows the window, in front of others.
    void open();
    void openOn(SettingsTab tab);

    [[nodiscard]] SettingsViewModel& model() { return model_; }

private:
    void noticed(const QString& name, const QVariant& object);
    void selectPending();

    NotificationCenter& notifications_;
    SettingsViewModel model_;
    std::optional<SettingsTab> pendingTab_; // for a window that is not open yet
    KeptWindow window_;
};

} // namespace norvane
