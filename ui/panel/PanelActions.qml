import QtQuick
import Norvane.Kit
import Norvane.Panel

Column {
    id: actions

    required property PanelViewModel model

    spacing: Theme.spacing

    PushButton {
        width: parent.width
        prominent: true
        enabled: !actions.model.content.running
        symbol: actions.model.content.backUpSymbol
        text: actions.model.content.backUpLabel
        onClicked: actions.model.backUpNow()
    }
    Row {
        id: pair

        readonly property real half: (width - spacing) / 2

        width: parent.width
        spacing: Theme.spacing

        PushButton {
            width: pair.half
            enabled: actions.model.content.canSkip
            text: Texts.text("Skip Next")
            onClicked: actions.model.skipNext()
        }
        PushButton {
            id: resume

            width: pair.half
            visible: actions.model.content.paused
            // The keyboard stays where it was, on the other of the two.
            onVisibleChanged: if (!visible && activeFocus) pause.forceActiveFocus(Qt.TabFocusReason)
            text: Texts.text("Resume")
            onClicked: actions.model.resume()
        }
        PushButton {
            id: pause

            width: pair.half
            visible: !actions.model.content.paused
            onVisibleChanged: if (!visible && activeFocus) resume.forceActiveFocus(Qt.TabFocusReason)
            enabled: !actions.model.content.running
            text: Texts.text("Pause")
            Accessible.role: Accessible.ButtonMenu
            onClicked: menu.popup(pause, 0, pause.height + 4)

            Symbol {
                anchors.right: parent.right
                anchors.rightMargin: 10
                anchors.verticalCenter: parent.verticalCenter
                name: "chevron.up.chevron.down"
                color: Theme.secondary
                size: 12
                opacity: pause.enabled ? 1 : Theme.disabledOpacity
            }
            PopupMenu {
                id: menu

                width: pair.half
                onClosed: (pause.visible ? pause : resume).forceActiveFocus(Qt.PopupFocusReason)

                PopupMenuItem {
                    text: Texts.text("For 1 Hour")
                    onTriggered: actions.model.pauseForHours(1)
                }
                PopupMenuItem {
                    text: Texts.text("For 3 Hours")
                    onTriggered: actions.model.pauseForHours(3)
                }
                PopupMenuItem {
                    text: Texts.text("Until Tomorrow")
                    onTriggered: actions.model.pauseUntilTomorrow()
                }
            }
        }
    }
}
