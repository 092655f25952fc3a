#include "platform/linux/desktop/activation_token.h"

namespace norvane {

namespace {

// Where Qt's Wayland platform looks when a window is to become active.
constexpr auto variable = "XDG_ACTIVATION_TOKEN";
constexpr auto tokenKey = "activation-token";
constexpr auto startupIdKey = "desktop-startup-id"; // by which older launchers send it

} // namespace

QString activationTokenOf(const QVariantMap& platformData) {
    const QString token = platformData[tokenKey].toString();
    return token.isEmpty() ? platformData[startupIdKey].toString() : token;
}

QVariantMap platformDataWith(const QString& activationToken) {
    if (activationToken.isEmpty())
        return {};
    return {{tokenKey, activationToken}, {startupIdKey, activationToken}};
}

QString takeActivationToken() {
    QString token = qEnvironmentVariable(variable);
    qunsetenv(variable);
    return token;
}

ActivationScope::ActivationScope(const QString& activationToken) {
    if (!activationToken.isEmpty())
        qputenv(variable, activationToken.toUtf8());
}

/// A token is good once: a later window would ask for the front with an old one, and children inherit it.
ActivationScope::~ActivationScope() { qunsetenv(variable); }

} // namespace norvane
