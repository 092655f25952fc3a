#include "tests/ui_driver.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace norvane {

namespace {

constexpr auto registryService = "org.a11y.atspi.Registry";
constexpr auto rootPath = "/org/a11y/atspi/accessible/root";
constexpr auto actionInterface = "org.a11y.atspi.Action";
constexpr auto accessible = "org.a11y.atspi.Accessible";
constexpr auto launcherProgram = "/usr/libexec/at-spi-bus-launcher";
constexpr auto launcherService = "org.a11y.Bus";
constexpr auto connectionName = "ui-driver";

/// at-spi2-core, atspi-constants.h, AtspiStateType: the number of a bit in GetState's answer.
enum StateBit {
    activeBit = 1,
    checkedBit = 4,
    enabledBit = 8,
    focusableBit = 11,
    focusedBit = 12,
    showingBit = 25
};

/// The answer's arguments; none when the object, or its program, is gone.
QVariantList call(const QDBusConnection& bus, const QString& service, const QString& path,
                  const char* interface, const char* method, const QVariantList& arguments = {}) {
    constexpr int milliseconds = 3000;
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage answer = bus.call(message, QDBus::Block, milliseconds);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments() : QVariantList();
}

QVariant property(const QDBusConnection& bus, const QString& service, const QString& path,
                  const char* interface, const char* name) {
    const QVariantList answer =
        call(bus, service, path, "org.freedesktop.DBus.Properties", "Get", {interface, name});
    return answer.isEmpty() ? QVariant() : answer[0].value<QDBusVariant>().variant();
}

struct Reference {
    QString service;
    QString path;
};

std::vector<Reference> childrenOf(const QDBusConnection& bus, const QString& service, const QString& path) {
    std::vector<Reference> children;
    const QVariantList answer = call(bus, service, path, accessible, "GetChildren");
    if (answer.isEmpty())
        return children;
    const auto list = answer[0].value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Reference child;
        QDBusObjectPath childPath;
        list.beginStructure();
        list >> child.service >> childPath;
        list.endStructure();
        child.path = childPath.path();
        children.push_back(child);
    }
    list.endArray();
    return children;
}

std::vector<QString> actionsOf(const QDBusConnection& bus, const QString& service, const QString& path) {
    std::vector<QString> names;
    const QVariantList answer = call(bus, service, path, actionInterface, "GetActions");
    if (answer.isEmpty())
        return names;
    const auto list = answer[0].value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name, description, keys;
        list.beginStructure();
        list >> name >> description >> keys;
        list.endStructure();
        names.push_back(name);
    }
    list.endArray();
    return names;
}

quint64 stateOf(const QDBusConnection& bus, const QString& service, const QString& path) {
    const QVariantList answer = call(bus, service, path, accessible, "GetState");
    const auto words = answer.isEmpty() ? QList<uint>() : qdbus_cast<QList<uint>>(answer[0]);
    return words.size() < 2 ? 0 : words[0] | quint64{words[1]} << 32U;
}

QRect placeOf(const QDBusConnection& bus, const QString& service, const QString& path) {
    constexpr uint onTheScreen = 0;
    const QVariantList answer =
        call(bus, service, path, "org.a11y.atspi.Component", "GetExtents", {onTheScreen});
    if (answer.isEmpty())
        return {};
    int x = 0, y = 0, width = 0, height = 0;
    const auto extents = answer[0].value<QDBusArgument>();
    extents.beginStructure();
    extents >> x >> y >> width >> height;
    extents.endStructure();
    return {x, y, width, height};
}

/// The bus that programs with windows answer on; not connected when there is none.
QDBusConnection accessibilityBus(const PrivateBus& session) {
    const auto sessionBus =
        QDBusConnection::connectToBus(QString::fromStdString(session.address()), connectionName);
    const QVariantList answer =
        call(sessionBus, launcherService, "/org/a11y/bus", launcherService, "GetAddress");
    QDBusConnection::disconnectFromBus(connectionName);
    return QDBusConnection::connectToBus(answer.value(0).toString(), connectionName);
}

std::string readable(const QVariant& text) {
    constexpr QChar narrowNoBreakSpace(0x202F); // which ICU puts before "PM", and no test can be read with
    return text.toString().replace(narrowNoBreakSpace, ' ').toStdString();
}

bool has(quint64 state, StateBit bit) { return (state >> bit & 1U) != 0; }

} // namespace

std::string describe(const Element& element) {
    return element.role + " \"" + element.name + "\"" + (element.enabled ? "" : " disabled") +
           (element.checked ? " checked" : "") +
           (element.value ? " " + std::to_string(*element.value).substr(0, 4) : "");
}

std::string describe(const std::vector<Element>& elements) {
    std::string lines;
    for (const Element& element : elements)
        lines += describe(element) + "\n";
    return lines;
}

std::optional<std::string> UiDriver::missingProgram() {
    for (const char* program : {"Xvfb", "openbox", "xdotool"})
        if (!installed(program))
            return program;
    return std::filesystem::exists(launcherProgram) ? std::nullopt : std::optional("at-spi2-core");
}

UiDriver::UiDriver(const PrivateBus& bus)
    : display_(screenSize.width(), screenSize.height()), variables_(bus.variables()), accessibility_("") {
    variables_.insert(variables_.end(),
                      {display_.variable(), "QT_QPA_PLATFORM=xcb", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1",
                       "XDG_RUNTIME_DIR=" + runtimeFolder_.path(), "LC_ALL=C.UTF-8", "LANGUAGE=en",
                       "TZ=UTC"});
    windowManager_.emplace(std::vector<std::string>{"openbox", "--sm-disable"}, variables_);
    // A window that is shown while the manager takes over stays without its content.
    const auto managed = [this] {
        return PeerProcess({"xdotool", "get_num_desktops"}, variables_).waitForExit() == 0;
    };
    if (!eventually(managed))
        throw std::runtime_error("no window manager: " + windowManager_->output());
    launcher_.emplace(std::vector<std::string>{launcherProgram, "--launch-immediately"}, variables_);
    if (bus.waitForName(launcherService))
        accessibility_ = accessibilityBus(bus);
    if (!accessibility_.isConnected())
        throw std::runtime_error("no accessibility bus: " + launcher_->output());
}

UiDriver::~UiDriver() { QDBusConnection::disconnectFromBus(connectionName); }

std::vector<Element> UiDriver::elements() const {
    std::vector<Element> found;
    for (const Reference& program : childrenOf(accessibility_, registryService, rootPath))
        for (const Reference& window : childrenOf(accessibility_, program.service, program.path))
            collect(window.service, window.path, 0, found);
    return found;
}

void UiDriver::collect(const QString& service, const QString& path, int depth,
                       std::vector<Element>& found) const {
    constexpr int deepest = 40;
    const quint64 state = stateOf(accessibility_, service, path);
    if (depth > deepest || !has(state, showingBit))
        return;
    Element element;
    element.role =
        call(accessibility_, service, path, accessible, "GetRoleName").value(0).toString().toStdString();
    element.name = readable(property(accessibility_, service, path, accessible, "Name"));
    element.description = readable(property(accessibility_, service, path, accessible, "Description"));
    element.enabled = has(state, enabledBit);
    element.active = has(state, activeBit);
    element.checked = has(state, checkedBit);
    element.focusable = has(state, focusableBit);
    element.focused = has(state, focusedBit);
    if (element.role == "slider" || element.role == "spin box")
        element.value =
            property(accessibility_, service, path, "org.a11y.atspi.Value", "CurrentValue").toDouble();
    element.place = placeOf(accessibility_, service, path);
    element.service = service;
    element.path = path;
    if (!element.name.empty() || element.focusable || element.value)
        found.push_back(element);
    for (const Reference& child : childrenOf(accessibility_, service, path))
        collect(child.service, child.path, depth + 1, found);
}

std::optional<Element> UiDriver::find(const std::string& role, const std::string& name) const {
    for (const Element& element : elements())
        if (element.role == role && element.name == name)
            return element;
    return std::nullopt;
}

std::optional<Element> UiDriver::focused() const {
    std::optional<Element> innermost;
    for (const Element& element : elements())
        if (element.focused)
            innermost = element;
    return innermost;
}

bool UiDriver::focusIsOn(const std::string& name) const {
    return eventually([&] {
        const auto now = focused();
        return now && now->name == name;
    });
}

bool UiDriver::ringIsOn(const std::string& name) const {
    return focusIsOn(name) && eventually([&] {
               const auto now = focused();
               return now && now->name == name && hasRing(now->place);
           });
}

bool UiDriver::hasRing(const QRect& place) const {
    constexpr int widest = 6; // how far from the edge
    for (int x = place.left() - widest; x <= place.left() + widest; ++x) {
        const std::uint32_t color = display_.pixel(std::max(0, x), place.center().y());
        const std::uint32_t red = color >> 16U, green = color >> 8U & 0xFFU, blue = color & 0xFFU;
        if (red > 230 && green > 120 && green < 170 && blue > 50 && blue < 130)
            return true;
    }
    return false;
}

std::optional<Element> UiDriver::tab() const {
    const auto before = focused();
    std::optional<Element> now;
    type("Tab");
    (void)eventually(
        [&] {
            now = focused();
            return now && (!before || before->path != now->path);
        },
        1);
    return now;
}

std::vector<std::string> UiDriver::tabStops() const {
    std::vector<std::string> names;
    QString first;
    for (int i = 0; i < 20; ++i) {
        const auto element = tab();
        if (!element || element->path == first)
            break;
        if (names.empty())
            first = element->path;
        names.push_back(element->name);
    }
    return names;
}

bool UiDriver::tabTo(const std::string& name) const {
    for (int i = 0; i < 20; ++i) {
        const auto element = tab();
        if (element && element->name == name)
            return true;
    }
    return false;
}

std::optional<Element> UiDriver::waitFor(const std::string& role, const std::string& name,
                                         double seconds) const {
    std::optional<Element> found;
    (void)eventually(
        [&] {
            found = find(role, name);
            return found.has_value();
        },
        seconds);
    return found;
}

bool UiDriver::waitUntilGone(const std::string& role, const std::string& name, double seconds) const {
    return eventually([&] { return !find(role, name); }, seconds);
}

bool UiDriver::press(const std::string& role, const std::string& name) const {
    const std::optional<Element> element = find(role, name);
    if (!element)
        return false;
    const std::vector<QString> actions = actionsOf(accessibility_, element->service, element->path);
    const auto found = std::find(actions.begin(), actions.end(), "Press");
    return found != actions.end() && !call(accessibility_, element->service, element->path, actionInterface,
                                           "DoAction", {static_cast<int>(found - actions.begin())})
                                          .isEmpty();
}

void UiDriver::run(const std::vector<std::string>& words) const {
    PeerProcess(words, variables_).waitForExit();
}

void UiDriver::type(const std::string& key) const { run({"xdotool", "key", key}); }

void UiDriver::moveTo(QPoint point) const {
    run({"xdotool", "mousemove", std::to_string(point.x()), std::to_string(point.y())});
}

void UiDriver::click(QPoint point) const {
    moveTo(point);
    run({"xdotool", "click", "1"});
}

void UiDriver::scrollDown(QPoint point) const {
    moveTo(point);
    run({"xdotool", "click", "--repeat", "30", "--delay", "5", "5"});
}

} // namespace norvane
