import QtQuick
import Norvane.Kit
import Norvane.Panel

Item {
    id: footer

    required property PanelViewModel model

    implicitHeight: buttons.implicitHeight

    ElidedLabel {
        anchors.left: parent.left
        anchors.right: buttons.left
        anchors.rightMargin: Theme.spacing
        anchors.verticalCenter: parent.verticalCenter
        text: footer.model.content.lastEvent
        font: Theme.caption2
        color: Theme.tertiary
    }
    Row {
        id: buttons

        anchors.right: parent.right
        anchors.rightMargin: -6 // the last symbol ends where the cards do
        spacing: Theme.spacing

        IconButton {
            symbol: "waveform.path.ecg"
            label: Texts.text("Backup Health")
            onClicked: footer.model.openHealth()
        }
        IconButton {
            symbol: "gearshape"
            label: Texts.text("Settings")
            onClicked: footer.model.openSettings()
        }
        IconButton {
            symbol: "power"
            label: Texts.text("Quit Norvane")
            tooltip: Texts.text("Quit — scheduled backups stop while Norvane isn't running")
            onClicked: footer.model.askToQuit()
        }
    }
}
