// One pane in a session: whoever opens a second one gets the first.
#pragma once

#include <QObject>
#include <QVariantMap>
#include <functional>

namespace norvane {

/// Main thread only. Without a session bus nobody is found.
class PaneInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// True: another pane is there and was brought to the front, so this process should end.
    [[nodiscard]] static bool handedOver();

    /// `activate` is called when the user opens the pane again.
    explicit PaneInstance(std::function<void()> activate);

public Q_SLOTS: // the names are the interface's
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);

private:
    const std::function<void()> activate_;
};

} // namespace norvane
