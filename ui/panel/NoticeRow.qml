import QtQuick
import Norvane.Kit

// A warning in one line, wrapped when it is long; what stands in it as children comes behind the text.
Item {
    id: notice

    required property string symbol
    required property string text
    property bool readAloud: true
    default property alias buttons: row.data

    width: parent ? parent.width : 0
    implicitHeight: Math.max(label.implicitHeight, row.implicitHeight)

    Symbol {
        y: (Math.min(label.implicitHeight, 14) - height) / 2 + (row.implicitHeight > label.implicitHeight ? (row.implicitHeight - label.implicitHeight) / 2 : 0)
        name: notice.symbol
        color: Theme.orange
        size: 11
    }
    Label {
        id: label

        x: 17
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - x - (row.width > 0 ? row.width + 8 : 0)
        text: notice.text
        font: Theme.caption2
        color: Theme.orange
        wrapMode: Text.Wrap
        Accessible.ignored: !notice.readAloud
    }
    Row {
        id: row

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.closeSpacing
    }
}
