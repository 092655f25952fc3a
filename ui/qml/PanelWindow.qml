import QtQuick
import Norvane

// The panel as a window: at the tray item it has no frame and goes when it is left; else it is a window like
// any other.
Window {
    id: window

    required property var model
    property bool attached: true

    signal left

    width: panel.implicitWidth
    height: panel.implicitHeight
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    color: Theme.window
    title: "Norvane"
    flags: attached ? Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint : Qt.Window

    onActiveChanged: if (!active && attached) left()
    onVisibleChanged: if (visible) panel.forceActiveFocus()

    MenuPanel {
        id: panel

        anchors.fill: parent
        model: window.model
        focus: true
        Keys.onEscapePressed: window.left()
    }
    Rectangle {
        anchors.fill: parent
        visible: window.attached
        color: "transparent"
        border.color: Theme.faded(Theme.primary, 0.2)
    }
}
