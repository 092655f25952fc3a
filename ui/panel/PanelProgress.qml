import QtQuick
import Norvane.Kit
import Norvane.Panel

// The running backup.
Card {
    id: card

    required property PanelViewModel model

    signal stopped

    ProgressLine {
        width: parent.width
        value: card.model.content.progress
        // What there is to read stands in the name: Qt tells no value of progress bars.
        Accessible.name: card.model.content.progressText || card.model.content.title
    }
    Item {
        width: parent.width
        implicitHeight: Math.max(details.implicitHeight, stop.implicitHeight)

        Column {
            id: details

            anchors.left: parent.left
            anchors.right: stop.left
            anchors.rightMargin: Theme.spacing
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            FigureLabel {
                width: parent.width
                visible: text !== ""
                text: card.model.content.progressText
                font: Theme.caption
                color: Theme.secondary
                clip: true
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: card.model.content.timeLeft
                font: Theme.caption2
                color: Theme.tertiary
                elide: Text.ElideRight
            }
        }
        PushButton {
            id: stop

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            small: true
            text: Texts.text("Stop")
            onClicked: card.stopped()
        }
    }
}
