import QtQuick
import Norvane.Kit
import Norvane.Settings

Form {
    id: tab

    required property GeneralSettings settings
    required property string version

    FormSection {
        footer: Texts.text("Norvane only schedules backups while it's running, so keeping it in your login items is recommended.")

        ToggleRow {
            text: Texts.text("Launch Norvane at login")
            checked: tab.settings.launchAtLogin
            onToggled: tab.settings.launchAtLogin = checked
        }
        Label {
            x: Theme.rowInset
            width: parent.width - 2 * x
            visible: text !== ""
            bottomPadding: 8
            text: tab.settings.loginItemError
            font: Theme.caption
            color: Theme.red
            wrapMode: Text.Wrap
        }
    }
    FormSection {
        footer: Texts.text("If a backup was missed while Norvane wasn't running, it waits this long after launch before starting — so logging in never competes with a backup. Applies from the next launch.")

        PickerRow {
            label: Texts.text("Wait after launch before catching up")
            choices: tab.settings.launchGraceChoices
            value: tab.settings.launchGrace
            onPicked: value => tab.settings.launchGrace = value
        }
    }
    FormSection {
        header: Texts.text("Language")

        PickerRow {
            label: Texts.text("Language")
            choices: tab.settings.languageChoices
            value: tab.settings.language
            onPicked: value => tab.settings.language = value
        }
        FormRow {
            visible: tab.settings.languageChanged

            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: Texts.text("Takes effect after Norvane reopens")
                font: Theme.caption
                color: Theme.secondary
            }
            PushButton {
                anchors.verticalCenter: parent.verticalCenter
                small: true
                text: Texts.text("Relaunch Now")
                onClicked: tab.settings.relaunch()
            }
        }
    }
    FormSection {
        header: Texts.text("Appearance")
        footer: Texts.text("Off: Norvane follows the accent color chosen in System Settings → Appearance. The Multicolor setting there means apps use their own color — Norvane orange.")

        ToggleRow {
            text: Texts.text("Always use Norvane orange")
            checked: tab.settings.alwaysBrand
            onToggled: tab.settings.alwaysBrand = checked
        }
    }
    FormSection {
        header: Texts.text("Updates")
        footer: tab.settings.updatesFooter

        ToggleRow {
            enabled: tab.settings.looksForUpdates
            text: Texts.text("Automatically check for updates")
            checked: tab.settings.automaticallyChecks
            onToggled: tab.settings.automaticallyChecks = checked
        }
        FormRow {
            PushButton {
                enabled: tab.settings.canCheckForUpdates
                text: Texts.text("Check for Updates…")
                onClicked: tab.settings.checkForUpdates()
            }
        }
    }
    FormSection {
        ValueRow {
            label: Texts.text("Destination")
            value: tab.settings.destination
        }
        ValueRow {
            label: Texts.text("Version")
            value: tab.version
        }
    }
}
