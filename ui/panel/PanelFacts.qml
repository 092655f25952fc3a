import QtQuick
import Norvane.Kit

Card {
    id: card

    required property var content

    InfoRow {
        symbol: "calendar.badge.clock"
        label: Texts.text("Schedule")
        value: card.content.schedule
    }
    InfoRow {
        visible: value !== ""
        symbol: "clock.arrow.circlepath"
        label: Texts.text("Last backup")
        value: card.content.lastBackup
    }
    InfoRow {
        visible: value !== ""
        symbol: "externaldrive.badge.timemachine"
        label: Texts.text("Destination")
        value: card.content.destination
    }
}
