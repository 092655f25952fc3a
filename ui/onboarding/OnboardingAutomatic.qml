import QtQuick
import Norvane.Kit
import Norvane.Onboarding

// Time Machine's own schedule, which only the user can turn off.
OnboardingStep {
    id: step

    required property OnboardingViewModel model

    title: Texts.text("Turn off Apple's automatic schedule")
    gap: 10
    spacing: Theme.wideSpacing

    OnboardingText {
        font: Theme.callout
        text: Texts.text("Norvane can only control timing if Apple's own hourly schedule is OFF. This is the single manual step — macOS doesn't let apps flip it for you.")
    }
    Item {
        width: parent.width
        height: Math.max(status.implicitHeight, 18)

        Symbol {
            anchors.verticalCenter: parent.verticalCenter
            name: step.model.content.statusSymbol
            color: step.model.content.automaticOff ? Theme.green : Theme.orange
            size: 18
        }
        Label {
            id: status

            x: 26
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x
            text: step.model.content.status
            font: Theme.weighted(Theme.body, Font.Medium)
            color: step.model.content.automaticOff ? Theme.green : Theme.orange
            wrapMode: Text.Wrap
        }
    }
    Label {
        width: parent.width
        text: step.model.content.destination
        font: Theme.callout
        color: Theme.secondary
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
    }
    Card {
        width: parent.width
        padding: 12
        spacing: Theme.closeSpacing

        Label {
            text: step.model.content.instructionsCaption
            font: Theme.weighted(Theme.caption2, Font.DemiBold)
            color: Theme.secondary
        }
        Label {
            bottomPadding: 2
            text: Texts.text("System Settings  ›  General  ›  Time Machine")
            font: Theme.weighted(Theme.callout, Font.DemiBold)
        }
        Repeater {
            model: step.model.instructions

            Label {
                required property var modelData

                width: parent.width
                text: modelData.styled
                textFormat: Text.StyledText
                font: Theme.callout
                wrapMode: Text.Wrap
                Accessible.name: modelData.plain
            }
        }
        SettingPicture {
            width: parent.width
        }
    }
    PushButton {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "arrow.up.forward.app"
        text: Texts.text("Open Time Machine Settings")
        onClicked: step.model.openTimeMachineSettings()
    }
}
