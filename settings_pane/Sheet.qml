import QtQuick
import Norvane.Kit

// Covers its window until the user is done with it.
Rectangle {
    id: sheet

    required property string title
    default property alias items: room.data
    property alias leading: left.data
    property alias buttons: right.data

    signal escaped

    color: Theme.backdrop
    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Keys.onEscapePressed: escaped()

    MouseArea { // what lies below is out of reach
        anchors.fill: parent
        hoverEnabled: true
        onWheel: event => event.accepted = true
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: 20
        radius: 10
        color: Theme.window
        border.color: Theme.faded(Theme.primary, 0.16)

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
            anchors.topMargin: 8
            anchors.bottom: right.top
            anchors.bottomMargin: 12
            width: parent.width
        }
        Row {
            id: left

            x: 16
            anchors.verticalCenter: right.verticalCenter
            spacing: 8
        }
        Row {
            id: right

            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.rightMargin: 16
            anchors.bottomMargin: 14
            height: Theme.controlHeight
            spacing: 8
        }
    }
}
