import QtQuick
import Norvane.Kit

Item {
    id: row

    required property int index
    required property string symbol
    required property int tint
    required property string message
    required property string date

    implicitHeight: texts.implicitHeight + 14
    Accessible.role: Accessible.ListItem
    Accessible.name: row.message + (row.date === "" ? "" : ", " + row.date)

    Divider {
        x: 42
        width: parent.width - x
        visible: row.index > 0
    }
    Item {
        x: 14
        y: texts.y
        width: 18
        height: message.font.pixelSize + 4

        Symbol {
            anchors.centerIn: parent
            name: row.symbol
            color: Theme.tints[row.tint]
            size: 13
        }
    }
    Column {
        id: texts

        x: 42
        y: 7
        width: parent.width - x - 16
        spacing: 1

        Label {
            id: message

            width: parent.width
            text: row.message
            font: Theme.callout
            wrapMode: Text.Wrap
            maximumLineCount: 6
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Label {
            visible: text !== ""
            text: row.date
            font: Theme.caption2
            color: Theme.tertiary
            Accessible.ignored: true
        }
    }
}
