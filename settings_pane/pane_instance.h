// One pane in a session: whoever opens a second one gets the first.
#pragma once

#include <QObject>
#include <QVariantMap>

namespace norvane {

/// Main thread only. Without a session bus nobody is found.
class PaneInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Calls that come before the event loop runs are kept for it. `platformData`: what a pane that is there
    /// already is activated with.
    explicit PaneInstance(QVariantMap platformData);

    /// True: another pane is there and was brought to the front, so this process should end.
    [[nodiscard]] bool handedOver();
    /// Whoever opens the pane from now on gets a new one.
    void retire();

Q_SIGNALS:
    void activated(const QVariantMap& platformData); ///< The user opened the pane again.

public Q_SLOTS: // the names are the interface's
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);

private:
    const QVariantMap platformData_;
};

} // namespace norvane
