import QtQuick
import Norvane.Kit

// A symbol that can be pressed. What it does is said by `label` to those who cannot see it.
BaseButton {
    id: button

    required property string symbol
    required property string label
    property string tooltip: label

    implicitWidth: 24
    implicitHeight: 22
    Accessible.name: label
    Accessible.description: tooltip

    contentItem: Item {
        Symbol {
            anchors.centerIn: parent
            name: button.symbol
            color: button.hovered ? Theme.primary : Theme.secondary
            size: 15
        }
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: Theme.faded(Theme.primary, button.down ? 0.14 : button.hovered ? 0.07 : 0)

        FocusRing {
            shown: button.visualFocus
        }
    }

    Tip {
        text: button.tooltip
        shown: button.hovered
    }
}
