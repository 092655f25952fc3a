import QtQuick
import QtQuick.Templates as T

// What all buttons have in common: Return and assistive programs press them as Space and the pointer do, and a key that
// is held presses once.
T.Button {
    id: base

    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.onPressAction: base.press()

    Keys.forwardTo: ReturnKeys {
        onPressed: base.press()
    }
    Keys.onSpacePressed: event => event.accepted = event.isAutoRepeat
    Keys.onReleased: event => event.accepted = event.isAutoRepeat

    function press() {
        if (base.enabled)
            base.clicked()
    }
}
