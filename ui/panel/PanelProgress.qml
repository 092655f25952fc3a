import QtQuick
import Norvane.Kit

// The running backup.
Card {
    id: card

    required property var content

    signal stopped

    ProgressLine {
        width: parent.width
        value: card.content.progress
        // What there is to read stands in the name: Qt tells no value of progress bars.
        Accessible.name: card.content.progressText || card.content.title
    }
    Item {
        width: parent.width
        implicitHeight: Math.max(details.implicitHeight, stop.implicitHeight)

        Column {
            id: details

            anchors.left: parent.left
            anchors.right: stop.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            FigureLabel {
                width: parent.width
                visible: text !== ""
                text: card.content.progressText
                font: Theme.caption
                color: Theme.secondary
                clip: true
            }
            Label {
                width: parent.width
                visible: text !== ""
                text: card.content.timeLeft
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
