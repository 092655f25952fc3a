import QtQuick
import Norvane.Kit

// A symbol, what it is about, and its value.
Item {
    id: info

    required property string symbol
    required property string label
    required property string value

    width: parent ? parent.width : 0
    implicitHeight: Math.max(name.implicitHeight, 16)
    Accessible.role: Accessible.StaticText
    Accessible.name: label + ": " + value

    Item {
        width: 18
        height: parent.height

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: info.symbol
            color: Theme.secondary
            size: 14
        }
    }
    Label {
        id: name

        x: 24
        anchors.verticalCenter: parent.verticalCenter
        text: info.label
        font: Theme.callout
        color: Theme.secondary
        Accessible.ignored: true
    }
    ElidedLabel {
        anchors.left: name.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        horizontalAlignment: Text.AlignRight
        text: info.value
        font: Theme.callout
        elide: Text.ElideMiddle
        Accessible.ignored: true
    }
}
