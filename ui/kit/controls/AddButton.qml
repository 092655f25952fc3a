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
            x: 12
            anchors.verticalCenter: parent.verticalCenter
            spacing: 6
            opacity: button.down ? 0.6 : 1

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
            x: 12
            width: parent.width - x
            visible: button.y > 0
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: 4
            radius: 5
            color: Theme.faded(Theme.primary, button.hovered ? 0.05 : 0)

            FocusRing {
                control: button
                gap: -2
            }
        }
    }
}
