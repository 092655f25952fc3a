import QtQuick
import Norvane.Kit

// Covers its window until the user is done with it: what lies below is out of reach.
Rectangle {
    id: sheet

    required property string title // as assistive programs read it
    property real frameWidth: width - 40
    property real frameHeight: height - 40
    default property alias content: frame.data

    signal escaped

    color: Theme.backdrop
    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Keys.onEscapePressed: escaped()

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: event => event.accepted = true
    }
    Rectangle {
        id: frame

        anchors.centerIn: parent
        width: sheet.frameWidth
        height: sheet.frameHeight
        radius: Theme.sheetRadius
        color: Theme.window
        border.color: Theme.floatingEdge
    }
}
