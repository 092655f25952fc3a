import QtQuick
import QtQuick.Templates as T
import Norvane.Kit
import Norvane.SettingsPane

PaneSheet {
    id: sheet

    required property FolderChooser chooser
    readonly property Flickable scrolled: list

    title: chooser.title
    onVisibleChanged: if (visible) list.forceActiveFocus(Qt.TabFocusReason)
    onEscaped: chooser.cancel()

    Row {
        id: place

        x: 16
        width: parent.width - 2 * x
        spacing: Theme.spacing

        PushButton {
            id: up

            enabled: sheet.chooser.canGoUp
            small: true
            text: Texts.text("Up")
            onClicked: sheet.chooser.up()
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - up.width - parent.spacing
            text: sheet.chooser.folder
            font: Theme.callout
            color: Theme.secondary
            elide: Text.ElideLeft
        }
    }
    Card {
        anchors.top: place.bottom
        anchors.topMargin: Theme.spacing
        anchors.bottom: parent.bottom
        x: 16
        width: parent.width - 2 * x
    }
    ListView {
        id: list

        anchors.top: place.bottom
        anchors.topMargin: 10
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 2
        x: 18
        width: parent.width - 2 * x
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: true
        model: sheet.chooser.rows
        Accessible.role: Accessible.List
        Accessible.name: sheet.chooser.folder
        delegate: T.ItemDelegate {
            id: row

            required property int index
            required property string name

            width: list.width
            height: 28
            focusPolicy: Qt.NoFocus
            Accessible.role: Accessible.ListItem
            Accessible.name: name
            Accessible.onPressAction: sheet.chooser.enter(row.index)
            onClicked: sheet.chooser.enter(row.index)

            contentItem: Item {
                Symbol {
                    x: 10
                    anchors.verticalCenter: parent.verticalCenter
                    name: "folder"
                    color: Theme.secondary
                    size: 16
                }
                Label {
                    x: 36
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - x - 14
                    text: row.name
                    elide: Text.ElideMiddle
                    Accessible.ignored: true
                }
            }
            background: Rectangle {
                radius: Theme.smallRadius
                color: Theme.faded(Theme.primary, list.activeFocus && row.ListView.isCurrentItem ? 0.1 : row.hovered ? 0.04 : 0)
            }
        }

        Keys.forwardTo: ReturnKeys {
            onPressed: sheet.chooser.enter(list.currentIndex)
        }
        Keys.onRightPressed: sheet.chooser.enter(currentIndex)
        Keys.onLeftPressed: if (sheet.chooser.canGoUp) sheet.chooser.up()
        ScrollIndicator {
            flickable: list
        }
    }
    Label {
        anchors.centerIn: list
        text: sheet.chooser.note
        color: Theme.secondary
    }
    buttons: [
        PushButton {
            text: Texts.text("Cancel")
            onClicked: sheet.chooser.cancel()
        },
        PushButton {
            prominent: true
            text: Texts.text("Choose This Folder")
            onClicked: sheet.chooser.accept()
        }
    ]
}
