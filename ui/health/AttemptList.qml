import QtQuick
import Norvane.Kit

// The latest attempts. The keyboard can go there, so that the window scrolls to them.
Item {
    id: list

    required property var attempts

    implicitHeight: column.implicitHeight
    activeFocusOnTab: true
    Accessible.role: Accessible.List
    Accessible.name: Texts.text("LATEST ATTEMPTS")

    Column {
        id: column

        width: parent.width
        spacing: Theme.tightSpacing

        Repeater {
            model: list.attempts

            Item {
                id: row

                required property var modelData

                width: column.width
                implicitHeight: date.implicitHeight + 2
                Accessible.role: Accessible.ListItem
                Accessible.name: row.modelData.date + ", " + row.modelData.result

                Symbol {
                    anchors.verticalCenter: parent.verticalCenter
                    name: row.modelData.success ? "checkmark.circle.fill" : "xmark.octagon.fill"
                    color: row.modelData.success ? Theme.green : Theme.red
                    size: 13
                }
                Label {
                    id: date

                    x: 20
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.date
                    font: Theme.callout
                    Accessible.ignored: true
                }
                Label {
                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    text: row.modelData.result
                    font: Theme.callout
                    color: Theme.secondary
                    Accessible.ignored: true
                }
            }
        }
    }
    FocusRing {
        shown: list.activeFocus
        inside: 4
    }
}
