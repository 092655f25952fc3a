import QtQuick
import Norvane.Kit
import Norvane.Settings

Form {
    id: tab

    required property ConditionsSettings settings

    Label {
        width: parent.width
        text: Texts.text("When a scheduled backup comes due, it waits while any of these are true — then rechecks until the time limit below. Back Up Now always runs immediately.")
        font: Theme.caption
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
    FormSection {
        header: Texts.text("Meetings & recording")
        footer: Texts.text("Screen-sharing detection covers system-level sharing; in-app sharing (Zoom, Meet) is caught by the microphone check.")

        ToggleRow {
            text: Texts.text("Defer while camera, microphone, or screen sharing is in use")
            checked: tab.settings.deferWhileCameraOrMicInUse
            onToggled: tab.settings.deferWhileCameraOrMicInUse = checked
        }
    }
    FormSection {
        header: Texts.text("System")
        footer: Texts.text("Busy is measured as processor load per core. The disk check applies to directly-connected backup disks; network destinations mount on demand.")

        PickerRow {
            label: Texts.text("Defer while the Mac is busy")
            choices: tab.settings.busyChoices
            value: tab.settings.busy
            onPicked: value => tab.settings.busy = value
        }
        ToggleRow {
            text: Texts.text("Wait until the backup disk is connected")
            checked: tab.settings.waitForDisk
            onToggled: tab.settings.waitForDisk = checked
        }
    }
    FormSection {
        header: Texts.text("Defer while these apps are running")

        RowRepeater {
            below: addApp
            model: tab.settings.blockedApps

            BlockedAppRow {
                id: app

                onRemoved: tab.settings.removeApp(app.index)
            }
        }
        AddButton {
            id: addApp

            property bool choosing: tab.settings.chooser.open

            text: Texts.text("Add App")
            onChoosingChanged: if (!choosing) Qt.callLater(forceActiveFocus, Qt.TabFocusReason) // qmllint disable type
            onClicked: tab.settings.chooser.begin()
        }
    }
    FormSection {
        header: Texts.text("Power")

        ToggleRow {
            text: Texts.text("Only back up on power adapter")
            checked: tab.settings.requireAC
            onToggled: tab.settings.requireAC = checked
        }
        ToggleRow {
            text: Texts.text("Defer in Low Power Mode")
            checked: tab.settings.deferInLowPowerMode
            onToggled: tab.settings.deferInLowPowerMode = checked
        }
        PickerRow {
            label: Texts.text("Don't start below battery level")
            choices: tab.settings.batteryChoices
            value: tab.settings.minBatteryPercent
            onPicked: value => tab.settings.minBatteryPercent = value
        }
    }
    FormSection {
        header: Texts.text("Maximum wait")
        footer: Texts.text("After waiting this long, the backup runs even if conditions still block it — so it can never be postponed forever.")

        SlideRow {
            name: Texts.text("Maximum wait")
            from: 1
            to: 12
            value: tab.settings.maxDeferralHours
            told: tab.settings.maxDeferralText
            onMoved: value => tab.settings.maxDeferralHours = value
        }
        PickerRow {
            label: Texts.text("Recheck every")
            choices: tab.settings.recheckChoices
            value: tab.settings.recheckMinutes
            onPicked: value => tab.settings.recheckMinutes = value
        }
    }
}
