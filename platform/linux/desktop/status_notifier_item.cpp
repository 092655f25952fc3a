#include "platform/linux/desktop/status_notifier_item.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QtEndian>
#include <utility>

#include "platform/linux/desktop/activation_token.h"

namespace norvane {

/// A picture as it goes over the bus: (iiay), ARGB32 in network byte order.
struct DBusImage {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
using DBusImages = QList<DBusImage>;

/// (sa(iiay)ss)
struct DBusToolTip {
    QString iconName;
    DBusImages images;
    QString title;
    QString text;
};

static QDBusArgument& operator<<(QDBusArgument& argument, const DBusImage& image) {
    argument.beginStructure();
    argument << image.width << image.height << image.bytes;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, DBusImage& image) {
    argument.beginStructure();
    argument >> image.width >> image.height >> image.bytes;
    argument.endStructure();
    return argument;
}

static QDBusArgument& operator<<(QDBusArgument& argument, const DBusToolTip& toolTip) {
    argument.beginStructure();
    argument << toolTip.iconName << toolTip.images << toolTip.title << toolTip.text;
    argument.endStructure();
    return argument;
}

static const QDBusArgument& operator>>(const QDBusArgument& argument, DBusToolTip& toolTip) {
    argument.beginStructure();
    argument >> toolTip.iconName >> toolTip.images >> toolTip.title >> toolTip.text;
    argument.endStructure();
    return argument;
}

} // namespace norvane

Q_DECLARE_METATYPE(norvane::DBusImage)
Q_DECLARE_METATYPE(norvane::DBusToolTip)

namespace norvane {

namespace {

constexpr auto watcherService = "org.kde.StatusNotifierWatcher";
constexpr auto objectPath = "/StatusNotifierItem";

DBusImages toDBus(const std::vector<TrayImage>& images) {
    DBusImages result;
    for (const TrayImage& image : images) {
        QByteArray bytes(static_cast<qsizetype>(image.pixels.size() * sizeof(std::uint32_t)), '\0');
        qToBigEndian<std::uint32_t>(image.pixels.data(), static_cast<qsizetype>(image.pixels.size()),
                                    bytes.data());
        result.append({image.size, image.size, bytes});
    }
    return result;
}

} // namespace

class StatusNotifierItem::Object final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QString IconThemePath READ iconThemePath)
    Q_PROPERTY(norvane::DBusImages IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ iconDescription)
    Q_PROPERTY(norvane::DBusToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)

public:
    explicit Object(const std::string& iconThemePath)
        : iconThemePath_(QString::fromStdString(iconThemePath)), bus_(QDBusConnection::sessionBus()),
          serviceName_(
              QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid())),
          watcher_(watcherService, bus_, QDBusServiceWatcher::WatchForRegistration) {
        qDBusRegisterMetaType<DBusImage>();
        qDBusRegisterMetaType<DBusImages>();
        qDBusRegisterMetaType<DBusToolTip>();
        if (!bus_.isConnected())
            return;
        bus_.registerObject(objectPath, this,
                            QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSlots |
                                QDBusConnection::ExportAllSignals);
        bus_.registerService(serviceName_);
        // The tray may come after us, or go and come again.
        connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, [this] { announce(); });
        announce();
    }

    /// The name goes with the process: giving it back would wait for the bus.
    ~Object() override { bus_.unregisterObject(objectPath); }

    void show(const TrayAppearance& appearance) {
        const TrayAppearance old = std::exchange(appearance_, appearance);
        if (old.iconName != appearance.iconName || old.images != appearance.images ||
            old.imageDescription != appearance.imageDescription)
            Q_EMIT NewIcon();
        if (old.title != appearance.title || old.subtitle != appearance.subtitle) {
            Q_EMIT NewTitle();
            Q_EMIT NewToolTip();
        }
        if (old.text != appearance.text)
            Q_EMIT XAyatanaNewLabel(label(), labelGuide());
    }

    void onActivate(std::function<void(int, int)> action) { activate_ = std::move(action); }

    [[nodiscard]] QString category() const { return QStringLiteral("ApplicationStatus"); }
    [[nodiscard]] QString id() const { return QStringLiteral("norvane"); }
    [[nodiscard]] QString title() const { return QString::fromStdString(appearance_.title); }
    [[nodiscard]] QString status() const { return QStringLiteral("Active"); }
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] QString iconName() const { return QString::fromStdString(appearance_.iconName); }
    [[nodiscard]] QString iconThemePath() const { return iconThemePath_; }
    [[nodiscard]] DBusImages iconPixmap() const { return toDBus(appearance_.images); }
    [[nodiscard]] QString iconDescription() const {
        return QString::fromStdString(appearance_.imageDescription);
    }
    [[nodiscard]] DBusToolTip toolTip() const {
        return {{}, {}, title(), QString::fromStdString(appearance_.subtitle).toHtmlEscaped()};
    }
    [[nodiscard]] bool itemIsMenu() const { return false; }
    [[nodiscard]] QDBusObjectPath menu() const { return QDBusObjectPath("/NO_DBUSMENU"); }
    [[nodiscard]] QString label() const { return QString::fromStdString(appearance_.text); }
    [[nodiscard]] QString labelGuide() const { return QStringLiteral("100%"); }

public Q_SLOTS: // the names are the protocol's
    void Activate(int x, int y) {
        const ActivationScope scope(std::exchange(activationToken_, {}));
        if (activate_)
            activate_(x, y);
    }
    /// Comes before the click that it belongs to.
    void ProvideXdgActivationToken(const QString& token) { activationToken_ = token; }
    void SecondaryActivate(int x, int y) { Activate(x, y); }
    void ContextMenu(int x, int y) { Activate(x, y); }
    void Scroll(int /*delta*/, const QString& /*orientation*/) {}

Q_SIGNALS:
    void NewIcon();
    void NewTitle();
    void NewToolTip();
    void XAyatanaNewLabel(const QString& label, const QString& guide);

private:
    void announce() {
        QDBusMessage call =
            QDBusMessage::createMethodCall(watcherService, "/StatusNotifierWatcher",
                                           "org.kde.StatusNotifierWatcher", "RegisterStatusNotifierItem");
        call.setAutoStartService(false);
        call.setArguments({serviceName_});
        bus_.send(call);
    }

    const QString iconThemePath_;
    QDBusConnection bus_;
    const QString serviceName_;
    QDBusServiceWatcher watcher_;
    TrayAppearance appearance_;
    std::function<void(int, int)> activate_;
    QString activationToken_;
};

StatusNotifierItem::StatusNotifierItem(const std::string& iconThemePath)
    : object_(std::make_unique<Object>(iconThemePath)) {}
StatusNotifierItem::~StatusNotifierItem() = default;

void StatusNotifierItem::show(const TrayAppearance& appearance) { object_->show(appearance); }

void StatusNotifierItem::onActivate(std::function<void(int x, int y)> action) {
    object_->onActivate(std::move(action));
}

} // namespace norvane

#include "status_notifier_item.moc"
