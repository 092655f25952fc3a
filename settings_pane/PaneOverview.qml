import QtQuick
import Norvane.Kit

Item {
    id: overview

    required property var model
    readonly property var content: model.content
    readonly property Flickable scrolled: form

    function focusDisk() {
        chooseDisk.forceActiveFocus(Window.window.takeoverReason)
    }
    function focusOptions() {
        options.forceActiveFocus(Window.window.takeoverReason)
    }

    Row {
        id: heading

        x: 12 // the picture has air of its own: it begins where the cards do
        y: 20
        spacing: 14

        Symbol {
            name: "externaldrive.badge.timemachine"
            color: Theme.accent
            size: 44
        }
        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            Label {
                text: Texts.text("Time Machine")
                font: Theme.weighted(Theme.title2, 600)
                Accessible.role: Accessible.Heading
            }
            Label {
                text: Texts.text("Backups of your files, to go back to at any time.")
                font: Theme.callout
                color: Theme.secondary
            }
        }
    }
    Form {
        id: form

        anchors.top: heading.bottom
        anchors.topMargin: 4
        anchors.bottom: bar.top
        width: parent.width

        FormSection {
            visible: overview.model.known
            header: Texts.text("Backup Disk")

            PathRow {
                visible: overview.content.hasDisk
                symbol: "internaldrive"
                name: overview.content.diskName
                details: overview.content.diskFolder

                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: overview.content.diskState
                    color: overview.content.connected ? Theme.secondary : Theme.orange
                }
            }
            ValueRow {
                visible: overview.content.hasDisk
                label: Texts.text("Latest backup")
                value: overview.content.latestBackup
            }
            FormRow {
                visible: !overview.content.hasDisk
                label: Texts.text("No backup disk yet")
            }
            FormRow {
                leading: PushButton {
                    id: chooseDisk

                    prominent: !overview.content.hasDisk
                    text: overview.content.chooseDisk
                    onClicked: overview.model.chooseDisk()
                }

                PushButton {
                    visible: overview.content.hasDisk
                    enabled: overview.content.canBrowse
                    symbol: "folder"
                    text: Texts.text("Browse Backups")
                    onClicked: overview.model.browseBackups()
                }
            }
        }
        Column {
            width: parent.width
            spacing: 8

            Repeater {
                model: overview.content.notices

                PaneNotice {
                    required property string modelData

                    text: modelData
                }
            }
            PaneNotice {
                visible: text !== ""
                text: overview.content.frequencyNotice
            }
            PaneNotice {
                visible: text !== ""
                text: overview.model.showsOptions ? "" : overview.model.trouble
                color: Theme.red
            }
        }
    }
    Item {
        id: bar

        anchors.bottom: parent.bottom
        width: parent.width
        height: 52

        Divider {}
        SavingNote {
            x: 16
            anchors.verticalCenter: parent.verticalCenter
            visible: overview.model.busy
        }
        Label {
            x: 16
            anchors.verticalCenter: parent.verticalCenter
            visible: overview.model.known && !overview.model.busy
            text: overview.content.frequencyText
            font: Theme.callout
            color: Theme.secondary
        }
        PushButton {
            id: options

            anchors.right: parent.right
            anchors.rightMargin: 16
            anchors.verticalCenter: parent.verticalCenter
            text: Texts.text("Options…")
            onClicked: overview.model.showOptions(true)
        }
    }
}
