import QtQuick
import Norvane.Kit

// One figure: what it is, how much, and how full.
Card {
    id: card

    required property var tile

    color: Theme.figureSurface
    border.width: 0
    spacing: 3
    Accessible.role: Accessible.StaticText
    Accessible.name: tile.title + ": " + tile.value + (tile.detail === "" ? "" : ", " + tile.detail)

    Label {
        text: card.tile.title
        font: Theme.caption
        color: Theme.secondary
        Accessible.ignored: true
    }
    Label {
        width: parent.width
        text: card.tile.value
        font: Theme.weighted(Theme.title3, Font.DemiBold)
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Label {
        width: parent.width
        visible: text !== ""
        text: card.tile.detail
        font: Theme.caption2
        color: Theme.secondary
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Item {
        width: parent.width
        height: 7
        visible: card.tile.hasFraction

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 4
            radius: 2
            color: Theme.groove

            Rectangle {
                width: parent.width * card.tile.fraction
                height: parent.height
                radius: parent.radius
                color: card.tile.warns ? Theme.orange : Theme.green
            }
        }
    }
}
