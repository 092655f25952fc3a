import QtQuick
import Norvane.Kit

// Text that can be pressed.
BaseButton {
    id: button

    property color color: Theme.primary
    property bool underlined: false

    implicitWidth: implicitContentWidth
    implicitHeight: implicitContentHeight
    font: Theme.caption2

    contentItem: Label {
        text: button.text
        font: button.underlined ? button.underlinedFont() : button.font
        color: button.color
        opacity: button.down ? Theme.pressedOpacity : 1
        Accessible.ignored: true
    }
    background: Item {
        FocusRing {
            inside: 3
            shown: button.visualFocus
        }
    }

    function underlinedFont() {
        let font = Theme.weighted(button.font, Font.Medium)
        font.underline = true
        return font
    }
}
