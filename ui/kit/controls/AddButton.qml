import QtQuick
import Norvane.Kit

// Adds a row to the list above it.
BaseButton {
    id: button

    width: parent ? parent.width : 0
    implicitHeight: 34
    focusPolicy: Qt.StrongFocus
    Accessible.name: text

    contentItem: Item {
        Row {
            x: Theme.rowInset
            anchors.verticalCenter: parent.verticalCenter
            spacing: Theme.closeSpacing
            opacity: button.down ? Theme.pressedOpacity : 1

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                name: "plus.circle.fill"
                color: Theme.accent
                size: 16
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                Accessible.ignored: true
            }
        }
    }
    background: Item {
        Divider {
            x: Theme.rowInset
            width: parent.width - x
            visible: button.y > 0
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: 4
            radius: Theme.smallRadius
            color: Theme.faded(Theme.primary, button.hovered ? 0.05 : 0)

            FocusRing {
                shown: button.visualFocus
                gap: -2
            }
        }
    }
}
