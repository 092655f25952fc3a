import QtQuick
import Norvane.Kit
import Norvane.Onboarding

OnboardingStep {
    id: step

    required property OnboardingViewModel model

    title: Texts.text("Stay covered")
    spacing: 16

    Column {
        width: parent.width
        spacing: Theme.closeSpacing

        Card {
            width: parent.width
            padding: 0

            ToggleRow {
                text: Texts.text("Launch Norvane at login")
                checked: step.model.launchAtLogin
                onToggled: step.model.launchAtLogin = checked
            }
        }
        Label {
            width: parent.width
            text: Texts.text("Recommended — your schedule only runs while the app does.")
            font: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
    Card {
        width: parent.width
        padding: 12
        spacing: 12

        Label {
            width: parent.width
            text: Texts.text("Norvane only notifies you when something is wrong — a backup that won't start, or a disk that keeps failing. Never on success.")
            wrapMode: Text.Wrap
        }
        Item {
            width: parent.width
            height: Theme.controlHeight

            PushButton {
                visible: !step.model.alertsRequested
                symbol: "bell.badge"
                text: Texts.text("Enable failure alerts")
                onClicked: step.model.enableAlerts()
            }
            Row {
                anchors.verticalCenter: parent.verticalCenter
                visible: step.model.alertsRequested
                spacing: Theme.closeSpacing

                Symbol {
                    name: "checkmark.circle.fill"
                    color: Theme.green
                    size: 16
                }
                Label {
                    text: Texts.text("Failure alerts enabled")
                }
            }
        }
    }
}
