import QtQuick
import Norvane.Kit
import Norvane.Panel

// The panel as a window: at the tray item it has no frame and goes when it is left; else it is a window like
// any other.
Window {
    id: window

    required property PanelViewModel model
    property bool attached: true

    signal left

    readonly property int fitting: panel.implicitHeight

    width: panel.implicitWidth
    minimumWidth: width
    maximumWidth: width
    color: Theme.window
    title: "Norvane"
    flags: attached ? Qt.Tool | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint : Qt.Window

    Component.onCompleted: fit()
    onFittingChanged: fit()
    onActiveChanged: {
        if (active)
            model.cancelQuit()
        else if (attached)
            left()
    }
    onVisibleChanged: if (visible) panel.forceActiveFocus()

    // The limits first: a window manager refuses a size beyond those that it knows.
    function fit() {
        if (fitting < minimumHeight)
            minimumHeight = fitting
        maximumHeight = fitting
        minimumHeight = fitting
        height = fitting
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.left()
    }
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
