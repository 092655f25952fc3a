// The desktop's leave to bring a window to the front, which comes with what the user did (freedesktop.org
// Desktop Entry 1.5, "D-Bus Activation"; Wayland's xdg-activation-v1). On X11 it is not needed.
#pragma once

#include <QString>
#include <QVariantMap>

namespace norvane {

/// Of the platform data of an org.freedesktop.Application call; empty: none.
[[nodiscard]] QString activationTokenOf(const QVariantMap& platformData);
/// The platform data that hand it on.
[[nodiscard]] QVariantMap platformDataWith(const QString& activationToken);

/// That this process was started with; empty: none. From then on child processes do not inherit it. To be
/// called before there are threads.
[[nodiscard]] QString takeActivationToken();

/// While it lives, the first window that is brought to the front uses the token. Main thread; not nested.
class ActivationScope {
public:
    explicit ActivationScope(const QString& activationToken);
    ~ActivationScope();
    ActivationScope(const ActivationScope&) = delete;
    ActivationScope& operator=(const ActivationScope&) = delete;
};

} // namespace norvane
