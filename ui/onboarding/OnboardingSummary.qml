import QtQuick
import Norvane.Kit

OnboardingStep {
    id: step

    required property var content

    symbol: "checkmark"
    tint: Theme.green
    title: Texts.text("You're set")
    gap: 24
    spacing: 16

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
