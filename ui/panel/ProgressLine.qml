import QtQuick
import Norvane.Kit

// How far something has come, 0 to 1; below 0 it is not known, and a piece of the line wanders. It glides forwards only:
// what begins anew begins at once.
Rectangle {
    id: line

    required property real value
    property color tint: Theme.accent

    implicitHeight: 6
    radius: 3
    color: Theme.faded(Theme.primary, 0.12)
    clip: true
    Accessible.role: Accessible.ProgressBar
    onValueChanged: {
        glide.stop()
        if (value > bar.reached && visible) {
            glide.to = value
            glide.start()
        } else {
            bar.reached = Math.max(0, value)
        }
    }
    Component.onCompleted: {
        glide.stop()
        bar.reached = Math.max(0, value)
    }

    Rectangle {
        id: bar

        readonly property bool wanders: line.value < 0
        property real reached: 0

        height: parent.height
        radius: parent.radius
        color: line.tint
        width: parent.width * (wanders ? 0.3 : reached)

        NumberAnimation {
            id: glide

            target: bar
            property: "reached"
            duration: 400
            easing.type: Easing.OutCubic
        }
        XAnimator on x {
            running: bar.wanders && line.visible
            loops: Animation.Infinite
            from: -bar.width
            to: line.width
            duration: 1600
            onRunningChanged: if (!running) bar.x = 0
        }
    }
}
