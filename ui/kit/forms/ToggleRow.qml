import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

// Something that is on or off; the whole row can be pressed.
T.Switch {
    id: row

    width: parent ? parent.width : 0
    implicitHeight: Math.max(36, implicitContentHeight + 16)
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : Theme.disabledOpacity
    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.checkable: true
    Accessible.checked: checked

    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()

    Keys.forwardTo: ReturnKeys {
        onPressed: row.press()
    }

    function press() {
        if (!enabled)
            return
        row.toggle()
        row.toggled()
    }

    contentItem: Label {
        leftPadding: Theme.rowInset
        rightPadding: 62
        verticalAlignment: Text.AlignVCenter
        text: row.text
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }
    indicator: Rectangle {
        x: row.width - width - 12
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        height: 20
        radius: height / 2
        color: row.checked ? Theme.accent : Theme.faded(Theme.primary, 0.2)

        Rectangle {
            x: row.checked ? parent.width - width - 2 : 2
            y: 2
            width: 16
            height: 16
            radius: 8
            color: Theme.onTint

            Behavior on x {
                NumberAnimation {
                    duration: 120
                }
            }
        }
        FocusRing {
            shown: row.visualFocus
        }
    }
    background: Item {
        Divider {
            x: Theme.rowInset
            width: parent.width - x
            visible: row.y > 0
        }
    }
}
