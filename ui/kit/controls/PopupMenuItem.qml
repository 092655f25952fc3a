import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

T.MenuItem {
    id: item

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: 24
    leftPadding: 8
    rightPadding: 8
    font: Theme.body
    Accessible.name: text
    Accessible.onPressAction: {
        item.menu.dismiss()
        item.triggered()
    }

    contentItem: Label {
        verticalAlignment: Text.AlignVCenter
        text: item.text
        font: item.font
        color: item.highlighted ? Theme.onAccent : Theme.primary
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: Theme.itemRadius
        color: item.highlighted ? Theme.accent : "transparent"
    }
}
