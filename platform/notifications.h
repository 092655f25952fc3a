// User notifications.
#pragma once

#include <functional>
#include <string>

namespace norvane {

struct Notification {
    std::string title;
    std::string body;
    /// What it is about, in a word of the program's own. A newer one takes the place of the older one about
    /// the same matter.
    std::string matter = {};
    /// Label of a button that starts a backup; empty: no button.
    std::string backupLabel = {};

    bool operator==(const Notification&) const = default;
};

/// What the user may answer to a notification of this program.
struct NotificationAnswers {
    std::function<void(const std::string& matter)> opened; ///< Clicked on the notification about this matter.
    std::function<void()> backupRequested;                 ///< Pressed the button that starts a backup.
};

/// Main thread only. Nothing waits, and failure is silent.
class Notifications {
public:
    virtual ~Notifications() = default;

    /// Shows a notification at once, with the default sound.
    virtual void post(const Notification& notification) = 0;

    /// Asks the user, where the desktop wants it, that notifications may be shown.
    virtual void requestPermission() = 0;

    /// Who takes the user's answers from now on.
    virtual void onAnswer(NotificationAnswers answers) = 0;
};

} // namespace norvane
