#include "platform/linux/desktop/dbus_notifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <algorithm>
#include <deque>
#include <map>
#include <optional>
#include <utility>

#include "platform/linux/desktop/activation_token.h"

namespace norvane {

namespace {

constexpr auto service = "org.freedesktop.Notifications";
constexpr auto objectPath = "/org/freedesktop/Notifications";
constexpr auto openAction = "default"; // what daemons call a click on the notification
constexpr auto backupAction = "back-up-now";
constexpr uchar normalUrgency = 1;
constexpr int daemonsTimeout = -1; // how long it stays on screen is the daemon's choice

QDBusMessage daemonCall(const char* method) {
    return QDBusMessage::createMethodCall(service, objectPath, service, method);
}

QStringList actionsOf(const Notification& notification) {
    QStringList namesAndLabels = {openAction, "Norvane"};
    if (!notification.backupLabel.empty())
        namesAndLabels << backupAction << QString::fromStdString(notification.backupLabel);
    return namesAndLabels;
}

} // namespace

/// One call is under way at a time, so that the id of what is shown is known before it is replaced.
class DBusNotifications::Object final : public QObject {
    Q_OBJECT

public:
    explicit Object(BusLink& bus) : bus_(bus) {
        daemonWatcher_.addWatchedService(service);
        connect(&daemonWatcher_, &QDBusServiceWatcher::serviceOwnerChanged, this, &Object::forgetDaemon);
        connect(&bus_, &BusLink::reopened, this, &Object::startOnNewBus);
        startOnNewBus();
    }

    void post(const Notification& notification) {
        if (!bus_.ensureConnected())
            return;
        std::erase_if(waiting_,
                      [&](const Notification& older) { return older.matter == notification.matter; });
        waiting_.push_back(notification);
        sendNext();
    }

    void startDaemon() { bus_.connection().send(daemonCall("GetServerInformation")); }

    void onAnswer(NotificationAnswers answers) { answers_ = std::move(answers); }

private Q_SLOTS:
    /// Comes before the action that it belongs to.
    void activationToken(uint id, const QString& token) { activationToken_ = {id, token}; }

    void actionInvoked(uint id, const QString& action) {
        // The signal is sent for every program's notifications.
        const auto shown = std::find_if(shown_.begin(), shown_.end(),
                                        [id](const auto& entry) { return entry.second == id; });
        if (shown == shown_.end())
            return;
        const auto [invoked, token] = std::exchange(activationToken_, {});
        const ActivationScope scope(invoked == id ? token : QString());
        if (action == backupAction && answers_.backupRequested)
            answers_.backupRequested();
        else if (action == openAction && answers_.opened)
            answers_.opened(std::string(shown->first));
    }

    /// The daemon may give the id away again.
    void closed(uint id, uint /*reason*/) {
        std::erase_if(shown_, [id](const auto& entry) { return entry.second == id; });
    }

private:
    void startOnNewBus() {
        if (bus_.connection().isConnected()) // as in BusLink::subscribe
            daemonWatcher_.setConnection(bus_.connection());
        bus_.subscribe(service, objectPath, service, "ActionInvoked", this,
                       SLOT(actionInvoked(uint, QString)));
        bus_.subscribe(service, objectPath, service, "ActivationToken", this,
                       SLOT(activationToken(uint, QString)));
        bus_.subscribe(service, objectPath, service, "NotificationClosed", this, SLOT(closed(uint, uint)));
        forgetDaemon();
    }

    void forgetDaemon() {
        ++daemon_;
        calling_ = false;
        shown_.clear();
        capabilities_.reset();
        sendNext();
    }

    void sendNext() {
        // On a connection that was lost, a call would never be answered.
        if (calling_ || waiting_.empty() || !bus_.connection().isConnected())
            return;
        if (!capabilities_) {
            call(daemonCall("GetCapabilities"), [this](const QDBusMessage& reply) {
                if (reply.type() == QDBusMessage::ErrorMessage)
                    waiting_.clear(); // nobody there, or nobody who answers
                else
                    capabilities_ = QDBusReply<QStringList>(reply).value();
            });
            return;
        }
        const Notification notification = std::move(waiting_.front());
        waiting_.pop_front();
        call(notifyCall(notification), [this, matter = notification.matter](const QDBusMessage& reply) {
            const QDBusReply<uint> id = reply;
            if (id.isValid())
                shown_[matter] = id.value();
        });
    }

    [[nodiscard]] QDBusMessage notifyCall(const Notification& notification) const {
        const auto shown = shown_.find(notification.matter);
        const uint replaced = shown == shown_.end() ? 0 : shown->second;
        const QString body = QString::fromStdString(notification.body);
        const QVariantMap hints = {{"urgency", QVariant::fromValue(normalUrgency)},
                                   {"desktop-entry", "org.norvane.Norvane"},
                                   {"sound-name", "dialog-warning"}};
        QDBusMessage call = daemonCall("Notify");
        call.setArguments({"Norvane", replaced, "org.norvane.Norvane",
                           QString::fromStdString(notification.title),
                           capabilities_->contains("body-markup") ? body.toHtmlEscaped() : body,
                           capabilities_->contains("actions") ? actionsOf(notification) : QStringList(),
                           hints, daemonsTimeout});
        return call;
    }

    /// `take` gets the answer, an error too, unless the daemon that was asked is gone, and perhaps the bus.
    template <class Take>
    void call(const QDBusMessage& message, Take take) {
        calling_ = true;
        auto* const watcher = new QDBusPendingCallWatcher(bus_.connection().asyncCall(message), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, take, daemon = daemon_] {
            watcher->deleteLater();
            if (daemon != daemon_)
                return;
            calling_ = false;
            take(watcher->reply());
            sendNext();
        });
    }

    BusLink& bus_;
    QDBusServiceWatcher daemonWatcher_;
    NotificationAnswers answers_;
    int daemon_ = 0;                           // counts the daemons that came and went
    std::optional<QStringList> capabilities_;  // of the running daemon; none: not asked yet
    std::map<std::string, uint> shown_;        // the id of the notification on screen, by its matter
    std::pair<uint, QString> activationToken_; // told of last, and of which notification
    std::deque<Notification> waiting_;         // at most one about a matter
    bool calling_ = false;
};

DBusNotifications::DBusNotifications(BusLink& sessionBus) : object_(std::make_unique<Object>(sessionBus)) {}
DBusNotifications::~DBusNotifications() = default;

void DBusNotifications::post(const Notification& notification) { object_->post(notification); }

void DBusNotifications::requestPermission() { object_->startDaemon(); }

void DBusNotifications::onAnswer(NotificationAnswers answers) { object_->onAnswer(std::move(answers)); }

} // namespace norvane

#include "dbus_notifications.moc"
