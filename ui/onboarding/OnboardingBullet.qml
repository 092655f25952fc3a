import QtQuick
import Norvane.Kit

Item {
    id: bullet

    required property string symbol
    required property string text
    property color tint: Theme.accent

    width: parent ? parent.width : 0
    implicitHeight: Math.max(label.implicitHeight, 20)

    Symbol {
        anchors.verticalCenter: parent.verticalCenter
        name: bullet.symbol
        color: bullet.tint
        size: 20
    }
    Label {
        id: label

        x: 34
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - x
        text: bullet.text
        wrapMode: Text.Wrap
    }
}
