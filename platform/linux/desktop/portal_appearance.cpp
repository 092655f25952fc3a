#include "platform/linux/desktop/portal_appearance.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QStringList>
#include <algorithm>
#include <array>
#include <utility>

#include "platform/linux/bus/desktop_portal.h"

namespace norvane {

namespace {

constexpr auto appearanceNamespace = "org.freedesktop.appearance";
constexpr auto kdeNamespace = "org.kde.kdeglobals.General";
constexpr uint prefersDark = 1;

using Settings = QMap<QString, QVariantMap>; // by namespace and key

bool isColour(const Rgb& colour) {
    const std::array parts = {colour.red, colour.green, colour.blue};
    return std::all_of(parts.begin(), parts.end(), [](double part) { return part >= 0 && part <= 1; });
}

/// Some backends wrap what the portal wraps again.
QVariant unwrapped(QVariant value) {
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

std::optional<Rgb> colourOf(const QVariant& value) {
    const auto argument = value.value<QDBusArgument>(); // const, or beginStructure is the one that writes
    if (argument.currentSignature() != "(ddd)")
        return std::nullopt;
    Rgb colour;
    argument.beginStructure();
    argument >> colour.red >> colour.green >> colour.blue;
    argument.endStructure();
    return isColour(colour) ? std::optional(colour) : std::nullopt;
}

std::optional<Rgb> kdeColourOf(const QVariant& value) {
    const QStringList parts = value.toString().split(',');
    std::array<double, 3> fractions{};
    if (parts.size() != 3)
        return std::nullopt;
    for (std::size_t i = 0; i < fractions.size(); ++i) {
        bool isNumber = false;
        fractions.at(i) = parts[static_cast<qsizetype>(i)].toInt(&isNumber) / 255.0;
        if (!isNumber)
            return std::nullopt;
    }
    const Rgb colour{fractions[0], fractions[1], fractions[2]};
    return isColour(colour) ? std::optional(colour) : std::nullopt;
}

AppearanceSettings appearanceOf(const Settings& settings) {
    const QVariantMap appearance = settings[appearanceNamespace];
    auto accent = colourOf(unwrapped(appearance["accent-color"]));
    if (!accent)
        accent = kdeColourOf(unwrapped(settings[kdeNamespace]["AccentColor"]));
    return {accent, unwrapped(appearance["color-scheme"]).toUInt() == prefersDark};
}

} // namespace

class PortalAppearance::Object final : public QObject {
    Q_OBJECT

public:
    Object(const QDBusConnection& bus, bool startsPortal)
        : bus_(bus), startsPortal_(startsPortal),
          portalWatcher_(portalService, bus, QDBusServiceWatcher::WatchForRegistration) {
        connect(&portalWatcher_, &QDBusServiceWatcher::serviceRegistered, this, &Object::readAll);
        qRegisterMetaType<QDBusVariant>(); // else the signal is not delivered to a slot that takes one
        bus_.connect(portalService, portalObjectPath, "org.freedesktop.portal.Settings", "SettingChanged",
                     this, SLOT(settingChanged(QString, QString, QDBusVariant)));
        readAll();
    }

    [[nodiscard]] AppearanceSettings current() const { return current_; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value) {
        if (space != appearanceNamespace && space != kdeNamespace)
            return;
        settings_[space][key] = value.variant();
        update();
    }

private:
    void readAll() {
        const QStringList spaces = {appearanceNamespace, kdeNamespace};
        QDBusMessage call = portalCall("Settings", "ReadAll", {spaces});
        call.setAutoStartService(startsPortal_);
        auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(call), this);
        connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
            watcher->deleteLater();
            const QDBusMessage reply = watcher->reply();
            if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != "a{sa{sv}}")
                return;
            settings_ = qdbus_cast<Settings>(reply.arguments().constFirst());
            update();
        });
    }

    void update() {
        const AppearanceSettings now = appearanceOf(settings_);
        if (std::exchange(current_, now) != now)
            Q_EMIT changed();
    }

    QDBusConnection bus_;
    const bool startsPortal_;
    QDBusServiceWatcher portalWatcher_;
    Settings settings_;
    AppearanceSettings current_;
};

PortalAppearance::PortalAppearance(const QDBusConnection& sessionBus, bool startsPortal)
    : object_(std::make_unique<Object>(sessionBus, startsPortal)) {}
PortalAppearance::~PortalAppearance() = default;

AppearanceSettings PortalAppearance::current() const { return object_->current(); }

std::unique_ptr<Appearance::Observation> PortalAppearance::observe(std::function<void()> changed) {
    struct Connection final : Observation {
        QMetaObject::Connection connection;
        ~Connection() override { QObject::disconnect(connection); }
    };
    auto observation = std::make_unique<Connection>();
    observation->connection = QObject::connect(object_.get(), &Object::changed, std::move(changed));
    return observation;
}

} // namespace norvane

#include "portal_appearance.moc"
