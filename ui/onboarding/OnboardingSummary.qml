import QtQuick
import Norvane.Kit
import Norvane.Onboarding

OnboardingStep {
    id: step

    required property OnboardingViewModel model

    symbol: "checkmark"
    tint: Theme.green
    title: Texts.text("You're set")
    gap: 24
    spacing: 16

    OnboardingBullet {
        symbol: "calendar.badge.clock"
        text: step.model.content.schedule
    }
    OnboardingBullet {
        symbol: step.model.content.controlSymbol
        text: step.model.content.control
        tint: step.model.content.automaticOff ? Theme.accent : Theme.orange
    }
    OnboardingBullet {
        symbol: "menubar.arrow.up.rectangle"
        text: Texts.text("Live in your menu bar: countdown, progress, pause and skip.")
    }
}
