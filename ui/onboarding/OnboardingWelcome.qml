import QtQuick
import Norvane.Kit

OnboardingStep {
    symbol: "clock.badge.checkmark"
    tint: Theme.brand
    title: Texts.text("Welcome to Norvane")

    OnboardingText {
        bottomPadding: 6
        text: Texts.text("Time Machine backs up on Apple's schedule — roughly every hour, whether it suits you or not. Norvane puts the tempo in your hands.")
    }
    OnboardingBullet {
        symbol: "calendar.badge.clock"
        text: Texts.text("Back up on your interval — every 1 to 24 hours — or at set times.")
    }
    OnboardingBullet {
        symbol: "moon.zzz.fill"
        text: Texts.text("Blackout windows keep backups out of your working hours.")
    }
    OnboardingBullet {
        symbol: "exclamationmark.arrow.circlepath"
        text: Texts.text("Missed backups are caught up gently after login or wake.")
    }
    OnboardingText {
        topPadding: 8
        font: Theme.caption
        text: Texts.text("Norvane schedules backups only while it's running — we'll add it to your login items in a moment.")
    }
}
