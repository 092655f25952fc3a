#include "app/application_interface.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <utility>

#include "platform/linux/desktop/activation_token.h"

namespace norvane {

class ApplicationInterface::Object final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit Object(ApplicationActions actions) : actions_(std::move(actions)) {
        QDBusConnection::sessionBus().registerObject(applicationObjectPath, this,
                                                     QDBusConnection::ExportAllSlots);
    }
    ~Object() override { QDBusConnection::sessionBus().unregisterObject(applicationObjectPath); }

public Q_SLOTS: // the names are the interface's
    void Activate(const QVariantMap& platformData) { later(actions_.activate, platformData); }

    void Open(const QStringList& /*uris*/, const QVariantMap& platformData) {
        later(actions_.activate, platformData);
    }

    void ActivateAction(const QString& name, const QVariantList& /*parameter*/,
                        const QVariantMap& platformData) {
        const auto action = actions_.named.find(name.toStdString());
        if (action != actions_.named.end())
            later(action->second, platformData);
        else if (calledFromDBus())
            sendErrorReply(QDBusError::InvalidArgs, "There is no action " + name);
    }

private:
    /// The caller gets its answer first.
    void later(const std::function<void()>& action, const QVariantMap& platformData) {
        const auto perform = [action, token = activationTokenOf(platformData)] {
            const ActivationScope scope(token);
            action();
        };
        QMetaObject::invokeMethod(this, perform, Qt::QueuedConnection);
    }

    const ApplicationActions actions_;
};

ApplicationInterface::ApplicationInterface(ApplicationActions actions)
    : object_(std::make_unique<Object>(std::move(actions))) {}
ApplicationInterface::~ApplicationInterface() = default;

} // namespace norvane

#include "application_interface.moc"
