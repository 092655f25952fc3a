import QtQuick
import Norvane.Kit
import Norvane.Settings

// Covers its window while the user chooses from the installed applications.
Sheet {
    id: sheet

    required property ApplicationChooser chooser
    readonly property Flickable scrolled: list

    title: Texts.text("Add App")
    frameWidth: 380
    frameHeight: 350
    onVisibleChanged: if (visible) search.forceActiveFocus(Qt.TabFocusReason)
    onEscaped: chooser.cancel()

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
        anchors.topMargin: Theme.spacing
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
            id: choice

            width: list.width
            current: list.activeFocus && choice.ListView.isCurrentItem
            onToggled: {
                list.currentIndex = choice.index
                sheet.chooser.toggle(choice.appId)
            }
        }

        Keys.onSpacePressed: event => { if (!event.isAutoRepeat) (list.currentItem as AppChoice)?.toggled() }
        Keys.forwardTo: ReturnKeys {
            onPressed: (list.currentItem as AppChoice)?.toggled()
        }
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
        spacing: Theme.spacing

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
