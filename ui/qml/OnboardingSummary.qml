import QtQuick
import Norvane

OnboardingStep {
    id: step

    required property var content

    spacing: 16

    TintedCircle {
        anchors.horizontalCenter: parent.horizontalCenter
        symbol: "checkmark"
        tint: Theme.green
        size: 76
        symbolSize: 34
    }
    OnboardingTitle {
        bottomPadding: 6
        text: Texts.text("You're set")
    }
    OnboardingBullet {
        symbol: "calendar.badge.clock"
        text: step.content.schedule
    }
    OnboardingBullet {
        symbol: step.content.controlSymbol
        text: step.content.control
        tint: step.content.automaticOff ? Theme.accent : Theme.orange
    }
    OnboardingBullet {
        symbol: "menubar.arrow.up.rectangle"
        text: Texts.text("Live in your menu bar: countdown, progress, pause and skip.")
    }
}
