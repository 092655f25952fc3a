import QtQuick
import Norvane.Kit

Item {
    id: notice

    required property string text
    property color color: Theme.orange

    width: parent ? parent.width : 0
    implicitHeight: label.implicitHeight

    Symbol {
        name: "exclamationmark.triangle.fill"
        color: notice.color
        size: 13
    }
    Label {
        id: label

        x: 20
        width: parent.width - x
        text: notice.text
        font: Theme.caption
        color: notice.color
        wrapMode: Text.Wrap
    }
}
