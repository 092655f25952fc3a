import QtQuick
import Norvane.Kit

// A warning that can be pressed.
BaseButton {
    id: button

    required property string symbol

    width: parent ? parent.width : 0
    implicitHeight: contentItem.implicitHeight

    contentItem: NoticeRow {
        readAloud: false
        symbol: button.symbol
        text: button.text
        opacity: button.down ? Theme.pressedOpacity : 1
    }
    background: Item {
        FocusRing {
            inside: 3
            shown: button.visualFocus
        }
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
