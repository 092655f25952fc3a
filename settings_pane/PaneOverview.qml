import QtQuick
import Norvane.Kit
import Norvane.SettingsPane

Item {
    id: overview

    required property PaneViewModel model
    readonly property Flickable scrolled: form

    function focusDisk() {
        chooseDisk.forceActiveFocus((Window.window as FixedWindow).takeoverReason)
    }
    function focusOptions() {
        options.forceActiveFocus((Window.window as FixedWindow).takeoverReason)
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
                font: Theme.weighted(Theme.title2, Font.DemiBold)
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
                visible: overview.model.content.hasDisk
                symbol: "internaldrive"
                name: overview.model.content.diskName
                details: overview.model.content.diskFolder

                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: overview.model.content.diskState
                    color: overview.model.content.connected ? Theme.secondary : Theme.orange
                }
            }
            ValueRow {
                visible: overview.model.content.hasDisk
                label: Texts.text("Latest backup")
                value: overview.model.content.latestBackup
            }
            FormRow {
                visible: !overview.model.content.hasDisk
                label: Texts.text("No backup disk yet")
            }
            FormRow {
                leading: PushButton {
                    id: chooseDisk

                    prominent: !overview.model.content.hasDisk
                    text: overview.model.content.chooseDisk
                    onClicked: overview.model.chooseDisk()
                }

                PushButton {
                    visible: overview.model.content.hasDisk
                    enabled: overview.model.content.canBrowse
                    symbol: "folder"
                    text: Texts.text("Browse Backups")
                    onClicked: overview.model.browseBackups()
                }
            }
        }
        Column {
            width: parent.width
            spacing: Theme.spacing

            Repeater {
                model: overview.model.content.notices

                PaneNotice {
                    required property string modelData

                    text: modelData
                }
            }
            PaneNotice {
                visible: text !== ""
                text: overview.model.content.frequencyNotice
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
            text: overview.model.content.frequencyText
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
