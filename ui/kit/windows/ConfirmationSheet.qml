import QtQuick
import Norvane.Kit

// Covers its window until the user has answered a question about something that cannot be undone. The focus
// goes back to where it came from.
Rectangle {
    id: sheet

    required property string title
    required property string message
    required property string answer
    property bool covering: false // what lies below is to be disabled
    property Item opener

    signal confirmed
    signal cancelled

    visible: title !== ""
    color: Theme.backdrop
    Accessible.role: Accessible.Dialog
    Accessible.name: title
    onVisibleChanged: visible ? takeFocus() : giveFocusBack()

    Keys.onEscapePressed: cancelled()

    function takeFocus() {
        opener = Window.activeFocusItem
        covering = true
        cancel.forceActiveFocus(Window.window.takeoverReason)
    }

    function giveFocusBack() {
        covering = false
        if (opener?.enabled)
            opener.forceActiveFocus(Window.window.takeoverReason)
        opener = null
    }

    MouseArea { // what lies below is out of reach
        anchors.fill: parent
        hoverEnabled: true
        onWheel: event => event.accepted = true
    }
    Rectangle {
        anchors.centerIn: parent
        width: 320
        height: column.implicitHeight + 2 * column.y
        radius: 10
        color: Theme.window
        border.color: Theme.faded(Theme.primary, 0.16)

        Column {
            id: column

            x: 18
            y: 18
            width: parent.width - 2 * x
            spacing: 10

            Row {
                width: parent.width
                spacing: 10

                TintedCircle {
                    id: circle

                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "trash"
                    tint: Theme.red
                    size: 34
                    symbolSize: 17
                }
                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - circle.width - parent.spacing
                    text: sheet.title
                    font: Theme.headline
                    wrapMode: Text.Wrap
                    Accessible.role: Accessible.Heading
                }
            }
            Label {
                width: parent.width
                bottomPadding: 4
                text: sheet.message
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
                    onClicked: sheet.cancelled()
                }
                PushButton {
                    width: pair.half
                    prominent: true
                    tint: Theme.red
                    text: sheet.answer
                    onClicked: sheet.confirmed()
                }
            }
        }
    }
}
