// The eyes and hands of a user on a desktop of its own: reads and presses what programs show, through the
// accessibility tree, and types and clicks as the keyboard and the pointer do.
#pragma once

#include <QDBusConnection>
#include <QPoint>
#include <QRect>
#include <optional>
#include <string>
#include <vector>

#include "tests/support/test_peers.h"

namespace norvane {

/// A control or a text as it was when it was read. Roles are AT-SPI's names, e.g. "push button".
struct Element {
    std::string role;
    std::string name;
    std::string description;
    bool enabled = false; ///< Qt 6.4 does not tell of disabled items in QML; those cannot be focused.
    bool checked = false;
    bool active = false; ///< Of a window: the keyboard's keys go there.
    bool focusable = false;
    bool focused = false;
    std::optional<double> value; ///< Of a slider or a spin button.
    QRect place;                 ///< On the screen.

    // Where it is found again: org.a11y.atspi.Accessible.
    QString service;
    QString path;
};

/// `push button "Stop"`, with "disabled", "checked" or the value behind it.
[[nodiscard]] std::string describe(const Element& element);
[[nodiscard]] std::string describe(const std::vector<Element>& elements);

/// An X server, a window manager and the accessibility bus beside the session bus.
class UiDriver {
public:
    explicit UiDriver(const PrivateBus& bus);
    ~UiDriver();
    UiDriver(const UiDriver&) = delete;
    UiDriver& operator=(const UiDriver&) = delete;

    /// The first program that it needs and that is not installed; none when all are there.
    [[nodiscard]] static std::optional<std::string> missingProgram();

    static constexpr QSize screenSize{1024, 700};

    /// The environment of the programs to drive.
    [[nodiscard]] std::vector<std::string> variables() const { return variables_; }

    /// All that shows now, in reading order: what has a name, and every control.
    [[nodiscard]] std::vector<Element> elements() const;
    [[nodiscard]] std::optional<Element> find(const std::string& role, const std::string& name) const;
    [[nodiscard]] std::optional<Element> focused() const;
    /// Whether the keyboard's focus comes to be there.
    [[nodiscard]] bool focusIsOn(const std::string& name) const;
    /// The same, and a ring shows it: in the brand's colour, around the control or inside its edge.
    [[nodiscard]] bool ringIsOn(const std::string& name) const;
    /// Presses Tab until the focus is where it began; the names of what had it.
    [[nodiscard]] std::vector<std::string> tabStops() const;
    /// Presses Tab until the focus is there. False: it never was.
    [[nodiscard]] bool tabTo(const std::string& name) const;
    /// As `find`, but waits until it shows.
    [[nodiscard]] std::optional<Element> waitFor(const std::string& role, const std::string& name,
                                                 double seconds = 60) const;
    [[nodiscard]] bool waitUntilGone(const std::string& role, const std::string& name,
                                     double seconds = 30) const;

    /// The element's own action, as an assistive program calls it. False: there is none such now.
    bool press(const std::string& role, const std::string& name) const;
    /// A key by its X name, e.g. "Tab" or "shift+Tab", to the focused window.
    void type(const std::string& key) const;
    void moveTo(QPoint point) const;
    void click(QPoint point) const;
    /// To the end of what lies under the point.
    void scrollDown(QPoint point) const;

private:
    void run(const std::vector<std::string>& words) const;
    std::optional<Element> tab() const;
    [[nodiscard]] bool hasRing(const QRect& place) const;
    void collect(const QString& service, const QString& path, int depth, std::vector<Element>& found) const;

    ScratchFolder runtimeFolder_;
    PrivateDisplay display_;
    std::vector<std::string> variables_;
    std::optional<PeerProcess> windowManager_;
    std::optional<PeerProcess> launcher_;
    QDBusConnection accessibility_;
};

} // namespace norvane
