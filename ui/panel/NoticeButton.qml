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
        opacity: button.down ? 0.6 : 1
    }
    background: Item {
        readonly property real radius: 3

        FocusRing {
            control: button
        }
        HoverHandler {
            cursorShape: Qt.PointingHandCursor
        }
    }
}
