import QtQuick
import QtQuick.Templates as T
import Norvane

// Two digits of a time: typed, or changed by the arrow keys and the wheel.
T.SpinBox {
    id: segment

    required property string label
    property int alignment: Text.AlignHCenter

    signal wentLeft
    signal wentRight

    implicitWidth: 22
    implicitHeight: 22
    editable: true
    wrap: true
    wheelEnabled: activeFocus
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.SpinBox
    Accessible.name: label
    up.indicator: Item {} // without one, the keys have no effect
    down.indicator: Item {}
    validator: IntValidator {
        bottom: 0
        top: 99
    }

    contentItem: TextInput {
        id: input

        text: segment.displayText
        font: Theme.body
        color: segment.activeFocus ? Theme.onAccent : Theme.primary
        selectionColor: "transparent"
        selectedTextColor: color
        horizontalAlignment: segment.alignment
        leftPadding: 2
        rightPadding: 2
        verticalAlignment: Text.AlignVCenter
        validator: segment.validator
        inputMethodHints: Qt.ImhDigitsOnly
        maximumLength: 2
        cursorVisible: false
        cursorDelegate: Item {}
        Keys.onLeftPressed: segment.wentLeft()
        Keys.onRightPressed: segment.wentRight()
        onActiveFocusChanged: if (activeFocus) selectAll()
        onTextChanged: if (activeFocus && text === segment.displayText) selectAll()
        onTextEdited: if (length === 2) segment.commit()
        onEditingFinished: segment.commit()
    }
    background: Rectangle {
        radius: 4
        color: segment.activeFocus ? Theme.accent : "transparent"
    }

    function commit() {
        const typed = valueFromText(input.text, locale)
        if (typed !== value && typed >= from && typed <= to) {
            value = typed
            valueModified()
        }
        input.text = Qt.binding(() => segment.displayText)
        input.selectAll()
    }
}
