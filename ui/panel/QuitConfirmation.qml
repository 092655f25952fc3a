import QtQuick
import Norvane.Kit

Column {
    id: confirmation

    required property var model

    spacing: 10
    Component.onCompleted: cancel.forceActiveFocus(Qt.TabFocusReason)

    Row {
        spacing: 10

        TintedCircle {
            symbol: "power"
            tint: Theme.red
            size: 38
            symbolSize: 17
            color: Theme.faded(tint, 0.14)
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: Texts.text("Quit Norvane?")
            font: Theme.question
            Accessible.role: Accessible.Heading
        }
    }
    Label {
        width: parent.width
        text: confirmation.model.quitMessage
        font: Theme.callout
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
    Row {
        id: pair

        readonly property real half: (width - spacing) / 2

        width: parent.width
        spacing: 8

        PushButton {
            id: cancel

            width: pair.half
            text: Texts.text("Cancel")
            onClicked: confirmation.model.cancelQuit()
        }
        PushButton {
            width: pair.half
            prominent: true
            tint: Theme.red
            text: Texts.text("Quit")
            onClicked: confirmation.model.quit()
        }
    }
}
