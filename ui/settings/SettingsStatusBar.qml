import QtQuick
import Norvane.Kit
import Norvane.Settings

Rectangle {
    id: bar

    required property SettingsViewModel model

    implicitHeight: 28
    color: Theme.barSurface

    Divider {}
    Rectangle {
        id: dot

        x: 14
        anchors.verticalCenter: parent.verticalCenter
        width: 7
        height: 7
        radius: 3.5
        color: Theme.tints[bar.model.dot]
    }
    Label {
        id: status

        readonly property real room: (hint.visible ? hint.x - 10 : bar.width - 14) - x

        anchors.left: dot.right
        anchors.leftMargin: 7
        anchors.verticalCenter: parent.verticalCenter
        width: Math.min(implicitWidth, room - deferral.width)
        text: bar.model.status
        font: Theme.caption
        elide: Text.ElideRight
        Accessible.name: text + deferral.text
    }
    Label {
        id: deferral

        anchors.left: status.right
        anchors.verticalCenter: parent.verticalCenter
        text: bar.model.deferral
        font: Theme.caption
        color: Theme.orange
        Accessible.ignored: true
    }
    Label {
        id: hint

        // What happens to the next backup comes first.
        visible: status.x + status.implicitWidth + deferral.implicitWidth + 10 <= x
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter
        text: Texts.text("Changes apply immediately")
        font: Theme.caption
        color: Theme.secondary
    }
}
