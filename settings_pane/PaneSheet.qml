import QtQuick
import Norvane.Kit

// A sheet with its title above, and buttons below.
Sheet {
    id: sheet

    default property alias items: room.data
    property alias leading: left.data
    property alias buttons: right.data

    Label {
        id: heading

        x: 16
        y: 14
        width: parent.width - 2 * x
        text: sheet.title
        font: Theme.headline
        elide: Text.ElideRight
        Accessible.role: Accessible.Heading
    }
    Item {
        id: room

        anchors.top: heading.bottom
        anchors.topMargin: Theme.spacing
        anchors.bottom: right.top
        anchors.bottomMargin: 12
        width: parent.width
    }
    Row {
        id: left

        x: 16
        anchors.verticalCenter: right.verticalCenter
        spacing: Theme.spacing
    }
    Row {
        id: right

        anchors.right: parent.right
        anchors.bottom: parent.bottom
        anchors.rightMargin: 16
        anchors.bottomMargin: 14
        height: Theme.controlHeight
        spacing: Theme.spacing
    }
}
