import QtQuick
import Norvane

Rectangle {
    id: bar

    required property var model

    implicitHeight: 28
    color: Theme.faded(Theme.primary, 0.03)

    Divider {}
    Rectangle {
        id: dot

        x: 14
        anchors.verticalCenter: parent.verticalCenter
        width: 7
        height: 7
        radius: 3.5
        color: [Theme.accent, Theme.yellow, Theme.secondary, Theme.green][bar.model.dot]
    }
    Label {
        id: status

        readonly property real room: hint.x - 10 - x

        anchors.left: dot.right
        anchors.leftMargin: 7
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, room)
        text: bar.model.status
        font: Theme.caption
        elide: Text.ElideRight
        Accessible.name: text + deferral.text
    }
    Label {
        id: deferral

        anchors.left: status.right
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(0, Math.min(implicitWidth, status.room - status.width))
        text: bar.model.deferral
        font: Theme.caption
        color: Theme.orange
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Label {
        id: hint

        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        text: Texts.text("Changes apply immediately")
        font: Theme.caption
        color: Theme.secondary
    }
}
