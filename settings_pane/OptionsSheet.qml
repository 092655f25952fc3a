import QtQuick
import Norvane.Kit
import Norvane.SettingsPane

PaneSheet {
    id: sheet

    required property PaneViewModel model
    readonly property Flickable scrolled: form

    title: Texts.text("Options")
    onVisibleChanged: if (visible) takeFocus()
    onEscaped: model.showOptions(false)

    function takeFocus() {
        frequency.takeFocus((Window.window as FixedWindow).takeoverReason)
    }

    Form {
        id: form

        anchors.fill: parent

        FormSection {
            PickerRow {
                id: frequency

                label: Texts.text("Back up frequency")
                choices: sheet.model.frequencies
                value: sheet.model.content.frequency
                placeholder: Texts.text("Choose…")
                onPicked: value => sheet.model.setFrequency(value)
            }
        }
        PaneNotice {
            visible: text !== ""
            text: sheet.model.trouble
            color: Theme.red
        }
        FormSection {
            header: Texts.text("Back up")

            PathList {
                below: addSource
                paths: sheet.model.sources
                onRemoved: row => sheet.model.removeSource(row)
            }
            AddButton {
                id: addSource

                text: Texts.text("Add Folder to Back Up…")
                onClicked: sheet.model.addSource()
            }
        }
        FormSection {
            header: Texts.text("Leave out")
            footer: Texts.text("Caches and the trash are always left out.")

            PathList {
                below: addExclusion
                paths: sheet.model.exclusions
                onRemoved: row => sheet.model.removeExclusion(row)
            }
            AddButton {
                id: addExclusion

                text: Texts.text("Add Folder to Leave Out…")
                onClicked: sheet.model.addExclusion()
            }
        }
    }
    leading: SavingNote {
        anchors.verticalCenter: parent.verticalCenter
        visible: sheet.model.busy
    }
    buttons: PushButton {
        prominent: true
        text: Texts.text("Done")
        onClicked: sheet.model.showOptions(false)
    }
}
