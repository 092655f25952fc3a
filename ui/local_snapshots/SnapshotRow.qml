import QtQuick
import Norvane.Kit

// One local snapshot.
Item {
    id: row

    required property int index
    required property string token
    required property string date
    required property string age
    required property string badgeSymbol
    required property string badge
    required property bool badgeWarns
    required property string badgeTip
    required property string deleteLabel
    property bool busy: false
    readonly property alias trash: trash

    signal deleteAsked

    implicitHeight: 42
    Accessible.role: Accessible.ListItem
    Accessible.name: date + ", " + age

    Divider {
        visible: row.index > 0
    }
    Symbol {
        id: clock

        anchors.verticalCenter: parent.verticalCenter
        name: "clock"
        color: Theme.secondary
        size: 14
    }
    Column {
        anchors.left: clock.right
        anchors.leftMargin: 6
        anchors.right: badge.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        Label {
            width: parent.width
            text: row.date
            font: Theme.callout
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: row.age
            font: Theme.caption2
            color: Theme.secondary
            elide: Text.ElideRight
            Accessible.ignored: true
        }
    }
    Row {
        id: badge

        anchors.right: trash.left
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.tightSpacing

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: row.badgeSymbol
            color: row.badgeWarns ? Theme.orange : Theme.green
            size: 11
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: row.badge
            font: Theme.caption2
            color: row.badgeWarns ? Theme.orange : Theme.secondary
            Accessible.description: row.badgeTip
        }
        HoverHandler {
            id: hover
        }
        Tip {
            text: row.badgeTip
            shown: hover.hovered && text !== ""
        }
    }
    IconButton {
        id: trash

        anchors.right: parent.right
        anchors.rightMargin: -8 // its symbol ends where the row does
        anchors.verticalCenter: parent.verticalCenter
        enabled: !row.busy
        opacity: enabled ? 1 : Theme.disabledOpacity
        symbol: "trash"
        label: row.deleteLabel
        tooltip: Texts.text("Delete this snapshot")
        onClicked: row.deleteAsked()
    }
}
