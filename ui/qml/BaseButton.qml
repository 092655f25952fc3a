import QtQuick
import QtQuick.Templates as T

// What all buttons have in common: Return and assistive programs press them as Space and the pointer do.
T.Button {
    id: base

    focusPolicy: Qt.StrongFocus
    Accessible.name: text
    Accessible.onPressAction: base.press()

    Keys.onReturnPressed: base.press()
    Keys.onEnterPressed: base.press()

    function press() {
        if (base.enabled)
            base.clicked()
    }
}
