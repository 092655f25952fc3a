import QtQuick
import Norvane.Kit
import Norvane.LocalSnapshots

// The restore points on the startup disk, and a way to delete them.
FixedWindow {
    id: window

    required property LocalSnapshotsViewModel model
    readonly property bool busy: model.content.busy
    property int asked: -1 // the row that the last question was about; none: about all

    width: 420
    height: 480
    title: Texts.text("Local Snapshots")
    scrolled: sheet.covering ? null : body.item?.scrolled ?? null
    onBusyChanged: if (!busy) Qt.callLater(goOn) // qmllint disable type

    // The keyboard was on a button that is deleted now, or could not be used meanwhile.
    function goOn() {
        const rows = body.item?.rows
        const row = rows && asked >= 0 ? rows.itemAt(Math.min(asked, rows.count - 1)) : null
        const button = row ? row.trash : deleteAll
        if (keyboardFree && button.enabled)
            button.forceActiveFocus(takeoverReason)
    }

    Item {
        id: page

        anchors.fill: parent
        anchors.margins: 18
        enabled: !sheet.covering

        WindowHeader {
            id: header

            width: parent.width
            symbol: "internaldrive"
            symbolSize: 18
            tint: Theme.brand
            title: Texts.text("Local Snapshots")
            subtitle: window.model.content.subtitle
        }
        Loader {
            id: body

            anchors.top: header.bottom
            anchors.topMargin: 14
            anchors.bottom: footer.top
            anchors.bottomMargin: 12
            width: parent.width
            sourceComponent: window.model.content.loading ? loading : window.model.content.empty ? empty : list
        }
        Column {
            id: footer

            anchors.bottom: parent.bottom
            width: parent.width
            spacing: Theme.wideSpacing

            Label {
                width: parent.width
                visible: text !== ""
                text: window.model.content.error
                font: Theme.callout
                color: Theme.red
                wrapMode: Text.Wrap
            }
            Divider {}
            Item {
                width: parent.width
                implicitHeight: Math.max(note.implicitHeight, deleteAll.implicitHeight)

                Label {
                    id: note

                    anchors.left: parent.left
                    anchors.right: spinner.left
                    anchors.rightMargin: Theme.spacing
                    anchors.verticalCenter: parent.verticalCenter
                    text: Texts.text("Deleting local snapshots only frees space on this Mac's startup disk — nothing on the backup drive is touched.")
                    font: Theme.caption2
                    color: Theme.secondary
                    wrapMode: Text.Wrap
                }
                Spinner {
                    id: spinner

                    anchors.right: deleteAll.left
                    anchors.rightMargin: Theme.spacing
                    anchors.verticalCenter: parent.verticalCenter
                    visible: window.model.content.busy
                    size: 16
                }
                PushButton {
                    id: deleteAll

                    anchors.right: parent.right
                    anchors.verticalCenter: parent.verticalCenter
                    enabled: window.model.content.canDeleteAll
                    ink: Theme.red
                    text: Texts.text("Delete All…")
                    onClicked: {
                        window.asked = -1
                        window.model.askToDeleteAll()
                    }
                }
            }
        }
    }
    ConfirmationSheet {
        id: sheet

        anchors.fill: parent
        title: window.model.question.title
        message: window.model.question.message
        answer: window.model.question.answer
        onConfirmed: window.model.confirm()
        onCancelled: window.model.cancel()
    }

    Component {
        id: loading

        Item {
            LoadingNote {
                anchors.centerIn: parent
                text: Texts.text("Reading snapshots…")
            }
        }
    }
    Component {
        id: empty

        Item {
            Column {
                anchors.centerIn: parent
                spacing: Theme.wideSpacing

                Symbol {
                    anchors.horizontalCenter: parent.horizontalCenter
                    name: "checkmark.circle"
                    color: Theme.secondary
                    size: 30
                }
                Label {
                    text: Texts.text("No local snapshots on your startup disk.")
                    color: Theme.secondary
                }
            }
        }
    }
    Component {
        id: list

        Item {
            readonly property alias scrolled: form
            readonly property alias rows: snapshots

            SectionCaption {
                id: caption

                text: window.model.content.caption
            }
            Form {
                id: form

                anchors.top: caption.bottom
                anchors.topMargin: 6
                anchors.bottom: parent.bottom
                x: -inset
                width: parent.width + 2 * inset
                inset: page.anchors.margins // to the window's edges: room for focus rings and the scroll indicator
                verticalInset: 3
                spacing: 0
                Accessible.role: Accessible.List
                Accessible.name: Texts.text("Local Snapshots")

                Repeater {
                    id: snapshots

                    model: window.model.rows

                    SnapshotRow {
                        id: snapshot

                        width: parent.width
                        busy: window.model.content.busy
                        onDeleteAsked: {
                            window.asked = snapshot.index
                            window.model.askToDelete(snapshot.token)
                        }
                    }
                }
            }
        }
    }
}
