import QtQuick
import Norvane.Kit

// A folder or a disk: its name, and below it where it is.
FormRow {
    id: row

    required property string symbol
    required property string name
    property string details

    implicitHeight: details === "" ? 36 : 48

    leading: [
        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: row.symbol
            color: Theme.secondary
            size: 20
        },
        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: Math.max(0, row.width - 40 - row.controlsWidth - 24)

            ElidedLabel {
                width: parent.width
                text: row.name
                elide: Text.ElideMiddle
            }
            ElidedLabel {
                width: parent.width
                visible: text !== ""
                text: row.details
                font: Theme.caption
                color: Theme.secondary
                elide: Text.ElideMiddle
            }
        }
    ]
}
