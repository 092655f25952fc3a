import QtQuick
import Norvane.Kit

// Two digits of a time: typed, or stepped by the arrow keys. It shows what it is given, and tells what the user wants.
TextInput {
    id: segment

    required property string label
    required property string digits
    required property int value // as assistive programs read it
    readonly property bool attended: activeFocus && Window.active

    signal typed(string digits)
    signal stepped(int by)
    signal wentLeft
    signal wentRight

    width: 22
    height: 22
    font: Theme.body
    color: activeFocus ? Theme.onAccent : Theme.primary
    selectionColor: "transparent"
    selectedTextColor: color
    leftPadding: 2
    rightPadding: 2
    verticalAlignment: Text.AlignVCenter
    inputMethodHints: Qt.ImhDigitsOnly
    maximumLength: 2
    cursorDelegate: Item {}
    activeFocusOnTab: true
    Accessible.role: Accessible.SpinBox
    Accessible.name: label
    Accessible.onIncreaseAction: stepped(1)
    Accessible.onDecreaseAction: stepped(-1)
    validator: RegularExpressionValidator {
        regularExpression: /[0-9]*/
    }

    Component.onCompleted: restore()
    onDigitsChanged: restore()
    onAttendedChanged: attended ? selectAll() : commit()
    onTextEdited: if (length === maximumLength) commit()
    onAccepted: commit()

    Keys.onUpPressed: step(1)
    Keys.onDownPressed: step(-1)
    Keys.onLeftPressed: wentLeft()
    Keys.onRightPressed: wentRight()
    Keys.onEscapePressed: event => {
        event.accepted = text !== digits
        restore()
    }
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home || event.key === Qt.Key_End)
            event.accepted = (Window.window as FixedWindow).scroll(event.key)
    }

    function step(by) {
        commit()
        stepped(by)
    }

    function commit() {
        const changed = text !== digits
        if (changed)
            typed(text)
        restore()
    }

    function restore() {
        text = digits // a binding would not undo what was typed
        if (activeFocus)
            selectAll()
    }

    Rectangle {
        z: -1
        anchors.fill: parent
        radius: Theme.itemRadius
        color: segment.activeFocus ? Theme.accent : "transparent"
    }
    MouseArea { // a cursor between the digits would be in the way
        anchors.fill: parent
        onPressed: {
            segment.forceActiveFocus(Qt.MouseFocusReason)
            segment.selectAll()
        }
    }
}
