import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

// Covers its window while the user chooses from the installed applications.
Rectangle {
    id: sheet

    required property var chooser
    readonly property Flickable scrolled: list

    color: Theme.backdrop
    Accessible.role: Accessible.Dialog
    Accessible.name: Texts.text("Add App")
    onVisibleChanged: if (visible) search.forceActiveFocus(Qt.TabFocusReason)

    Keys.onEscapePressed: chooser.cancel()

    MouseArea { // what lies below is out of reach
        anchors.fill: parent
        hoverEnabled: true
        onWheel: event => event.accepted = true
    }
    Rectangle {
        id: frame

        anchors.centerIn: parent
        width: 380
        height: 350
        radius: 10
        color: Theme.window
        border.color: Theme.faded(Theme.primary, 0.16)

        SearchField {
            id: search

            x: 12
            y: 12
            width: parent.width - 24
            text: sheet.chooser.search
            onEdited: text => sheet.chooser.search = text
            onWentDown: list.forceActiveFocus(Qt.TabFocusReason)
        }
        ListView {
            id: list

            anchors.top: search.bottom
            anchors.topMargin: 8
            anchors.bottom: buttons.top
            anchors.bottomMargin: 10
            x: 6
            width: parent.width - 12
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            model: sheet.chooser.found
            Accessible.role: Accessible.List
            Accessible.name: Texts.text("Add App")
            delegate: AppChoice {
                width: list.width
                current: list.activeFocus && ListView.isCurrentItem
                onToggled: {
                    list.currentIndex = index
                    sheet.chooser.toggle(appId)
                }
            }

            Keys.onSpacePressed: event => { if (currentItem && !event.isAutoRepeat) currentItem.toggled() }
            Keys.onReturnPressed: event => { if (currentItem && !event.isAutoRepeat) currentItem.toggled() }
            ScrollIndicator {
                flickable: list
            }
        }
        Label {
            anchors.centerIn: list
            visible: list.count === 0
            text: Texts.text("No applications found")
            color: Theme.secondary
        }
        Row {
            id: buttons

            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: 12
            spacing: 8

            PushButton {
                text: Texts.text("Cancel")
                onClicked: sheet.chooser.cancel()
            }
            PushButton {
                prominent: true
                enabled: sheet.chooser.chosenCount > 0
                text: Texts.text("Add")
                onClicked: sheet.chooser.accept()
            }
        }
    }
}
