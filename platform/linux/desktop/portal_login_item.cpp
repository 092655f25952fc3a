#include "platform/linux/desktop/portal_login_item.h"

#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QStringList>
#include <QVariantMap>
#include <functional>
#include <optional>
#include <utility>

#include "platform/linux/bus/desktop_portal.h"

namespace norvane {

namespace {

constexpr auto grantedKey = "loginItem.v1";
constexpr uint granted = 0; // of the portal's answers: 1 is cancelled by the user, 2 anything else

/// Where the answer will come from, known beforehand so that it is not missed
/// (org.freedesktop.portal.Request).
QString answerPath(const QDBusConnection& bus, const QString& token) {
    QString sender = bus.baseService().mid(1);
    sender.replace('.', '_');
    return QString(portalObjectPath) + "/request/" + sender + "/" + token;
}

} // namespace

/// One question to the portal and its one answer.
class PortalLoginItem::Request final : public QObject {
    Q_OBJECT

public:
    /// `take` gets whether the program is started at login from now on, none when that stays as it is, and an
    /// error text unless that is as it was wanted.
    using Take = std::function<void(std::optional<bool> autostart, const std::string& error)>;

    Request(QDBusConnection bus, const QString& token, bool autostart, const QString& program, Take take)
        : wanted_(autostart), take_(std::move(take)),
          portalWatcher_(portalService, bus, QDBusServiceWatcher::WatchForUnregistration) {
        bus.connect(portalService, answerPath(bus, token), "org.freedesktop.portal.Request", "Response", this,
                    SLOT(response(uint, QVariantMap)));
        connect(&portalWatcher_, &QDBusServiceWatcher::serviceUnregistered, this,
                [this] { finish({}, "The desktop did not answer."); });
        const QVariantMap options = {{"handle_token", token},
                                     {"reason", "Norvane starts your backups while it runs."},
                                     {"autostart", autostart},
                                     {"commandline", QStringList(program)}};
        auto* const call = new QDBusPendingCallWatcher(
            bus.asyncCall(portalCall("Background", "RequestBackground", {"", options})), this);
        connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
            if (call->isError())
                finish({}, "This desktop does not let programs change their login items.");
        });
    }

private Q_SLOTS:
    void response(uint answer, const QVariantMap& results) {
        const std::optional<bool> autostart =
            answer == granted ? std::optional(results["autostart"].toBool()) : std::nullopt;
        finish(autostart, autostart == wanted_ ? "" : "The desktop did not allow it.");
    }

private:
    void finish(std::optional<bool> autostart, const std::string& error) {
        if (const Take take = std::exchange(take_, nullptr))
            take(autostart, error); // may end this request
    }

    const bool wanted_;
    Take take_;
    QDBusServiceWatcher portalWatcher_;
};

PortalLoginItem::PortalLoginItem(BusLink& sessionBus, UserDefaults& defaults, std::string program)
    : bus_(sessionBus), defaults_(defaults), program_(std::move(program)) {}
PortalLoginItem::~PortalLoginItem() = default;

bool PortalLoginItem::enabled() const { return defaults_.boolean(grantedKey); }

void PortalLoginItem::enable(const Done& done) { request(true, done); }

void PortalLoginItem::disable(const Done& done) { request(false, done); }

void PortalLoginItem::request(bool autostart, const Done& done) {
    // Qt waits for the bus when it subscribes to the answer, and aborts the program when the bus is gone.
    if (!bus_.answers()) {
        done("The desktop does not answer.");
        return;
    }
    const QString token = "norvane_login_item_" + QString::number(++requests_);
    request_ =
        std::make_unique<Request>(bus_.connection(), token, autostart, QString::fromStdString(program_),
                                  [this, done](std::optional<bool> startsAtLogin, const std::string& error) {
                                      if (startsAtLogin)
                                          defaults_.set(grantedKey, {*startsAtLogin});
                                      done(error);
                                  });
}

} // namespace norvane

#include "portal_login_item.moc"
