import QtQuick
import Norvane.Kit
import Norvane.SettingsPane

PaneSheet {
    id: sheet

    required property PaneViewModel model
    readonly property Flickable scrolled: scroller

    title: Texts.text("Choose Backup Disk")
    onVisibleChanged: if (visible) takeFocus()
    onEscaped: model.cancelDisk()

    function takeFocus() {
        folder.forceActiveFocus((Window.window as FixedWindow).takeoverReason)
    }

    Flickable {
        id: scroller

        anchors.top: parent.top
        anchors.bottom: notices.top
        anchors.bottomMargin: notices.implicitHeight > 0 ? 10 : 0
        x: 16
        width: parent.width - 2 * x
        contentHeight: card.height
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Card {
            id: card

            width: parent.width
            padding: 0
            spacing: 0

            Repeater {
                id: offers

                model: sheet.model.offers

                DiskOffer {
                    id: offer

                    required property int index

                    onClicked: sheet.model.selectOffer(offer.index)
                }
            }
            FormRow {
                visible: offers.count === 0
                label: sheet.model.offersNote
            }
        }
        ScrollIndicator {
            flickable: scroller
        }
    }
    Column {
        id: notices

        anchors.bottom: parent.bottom
        x: 16
        width: parent.width - 2 * x
        spacing: Theme.closeSpacing

        Repeater {
            model: sheet.model.diskNotices

            PaneNotice {
                required property string modelData

                text: modelData
            }
        }
    }
    leading: PushButton {
        id: folder

        symbol: "folder"
        text: Texts.text("Choose Folder…")
        onClicked: sheet.model.chooseDiskFolder()
    }
    buttons: [
        PushButton {
            text: Texts.text("Cancel")
            onClicked: sheet.model.cancelDisk()
        },
        PushButton {
            prominent: true
            enabled: sheet.model.canUseDisk
            text: Texts.text("Use Disk")
            onClicked: sheet.model.useDisk()
        }
    ]
}
