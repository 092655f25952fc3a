import QtQuick
import Norvane.Kit
import Norvane.Panel

Card {
    id: card

    required property PanelViewModel model

    InfoRow {
        symbol: "calendar.badge.clock"
        label: Texts.text("Schedule")
        value: card.model.content.schedule
    }
    InfoRow {
        visible: value !== ""
        symbol: "clock.arrow.circlepath"
        label: Texts.text("Last backup")
        value: card.model.content.lastBackup
    }
    InfoRow {
        visible: value !== ""
        symbol: "externaldrive.badge.timemachine"
        label: Texts.text("Destination")
        value: card.model.content.destination
    }
}
