import QtQuick
import Norvane.Kit

// Asks before something is done that cannot be undone.
Column {
    id: question

    required property string symbol
    required property string title
    required property string message
    required property string answer // the button that does it
    property font titleFont: Theme.headline
    property real circleSize: 34
    property real circleOpacity: 0.16
    property real messagePadding: 4

    signal confirmed
    signal cancelled

    spacing: Theme.wideSpacing

    // Onto the button that does nothing.
    function takeFocus(reason) {
        cancel.forceActiveFocus(reason)
    }

    Row {
        width: parent.width
        spacing: Theme.wideSpacing

        TintedCircle {
            id: circle

            anchors.verticalCenter: parent.verticalCenter
            symbol: question.symbol
            tint: Theme.red
            color: Theme.faded(tint, question.circleOpacity)
            size: question.circleSize
            symbolSize: 17
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - circle.width - parent.spacing
            text: question.title
            font: question.titleFont
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
    }
    Label {
        width: parent.width
        bottomPadding: question.messagePadding
        text: question.message
        font: Theme.callout
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
    Row {
        id: pair

        readonly property real half: (width - spacing) / 2

        width: parent.width
        spacing: Theme.spacing

        PushButton {
            id: cancel

            width: pair.half
            text: Texts.text("Cancel")
            onClicked: question.cancelled()
        }
        PushButton {
            width: pair.half
            prominent: true
            tint: Theme.red
            text: question.answer
            onClicked: question.confirmed()
        }
    }
}
