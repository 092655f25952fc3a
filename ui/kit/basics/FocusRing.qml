import QtQuick
import Norvane.Kit

// Around the control that the keyboard is on.
Rectangle {
    required property Item control
    property real gap: 2

    anchors.fill: parent
    anchors.margins: -gap - border.width
    visible: control.visualFocus
    radius: (parent.radius ?? 5) + gap + border.width
    color: "transparent"
    border.width: 2
    border.color: Theme.faded(Theme.accent, 0.7)
}
