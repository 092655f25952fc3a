import QtQuick
import Norvane.Kit

// Around the control that the keyboard is on.
Rectangle {
    required property bool shown
    property real gap: 2
    property real inside: (parent as Rectangle)?.radius ?? 5 // the radius of what it goes around

    anchors.fill: parent
    anchors.margins: -gap - border.width
    visible: shown
    radius: inside + gap + border.width
    color: "transparent"
    border.width: 2
    border.color: Theme.ring
}
