#include "platform/linux/desktop/portal_notifications.h"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QObject>
#include <QVariantMap>
#include <utility>

#include "platform/linux/bus/desktop_portal.h"

namespace norvane {

namespace {

constexpr auto openAction = "open";
constexpr auto backupAction = "back-up-now";

QVariantMap contentOf(const Notification& notification) {
    QVariantMap content = {{"title", QString::fromStdString(notification.title)},
                           {"body", QString::fromStdString(notification.body)},
                           {"priority", "normal"},
                           {"default-action", openAction}};
    if (!notification.backupLabel.empty()) {
        const QVariantMap button = {{"label", QString::fromStdString(notification.backupLabel)},
                                    {"action", backupAction}};
        content["buttons"] = QVariant::fromValue(QList<QVariantMap>{button});
    }
    return content;
}

} // namespace

class PortalNotifications::Object final : public QObject {
    Q_OBJECT

public:
    explicit Object(BusLink& bus) : bus_(bus) {
        qDBusRegisterMetaType<QList<QVariantMap>>();
        connect(&bus_, &BusLink::reopened, this, &Object::subscribe);
        subscribe();
    }

    void post(const Notification& notification) {
        if (bus_.ensureConnected())
            bus_.connection().send(
                portalCall("Notification", "AddNotification",
                           {QString::fromStdString(notification.matter), contentOf(notification)}));
    }

    void onAnswer(NotificationAnswers answers) { answers_ = std::move(answers); }

private Q_SLOTS:
    void actionInvoked(const QString& matter, const QString& action, const QVariantList& /*parameter*/) {
        if (action == openAction && answers_.opened)
            answers_.opened(matter.toStdString());
        else if (action == backupAction && answers_.backupRequested)
            answers_.backupRequested();
    }

private:
    void subscribe() {
        bus_.subscribe(portalService, portalObjectPath, "org.freedesktop.portal.Notification",
                       "ActionInvoked", this, SLOT(actionInvoked(QString, QString, QVariantList)));
    }

    BusLink& bus_;
    NotificationAnswers answers_;
};

PortalNotifications::PortalNotifications(BusLink& sessionBus)
    : object_(std::make_unique<Object>(sessionBus)) {}
PortalNotifications::~PortalNotifications() = default;

void PortalNotifications::post(const Notification& notification) { object_->post(notification); }

void PortalNotifications::onAnswer(NotificationAnswers answers) { object_->onAnswer(std::move(answers)); }

} // namespace norvane

#include "portal_notifications.moc"
