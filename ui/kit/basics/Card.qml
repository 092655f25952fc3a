import QtQuick
import Norvane.Kit

// A rounded surface around what it holds.
Rectangle {
    id: card

    default property alias items: column.data
    property real padding: 10
    property alias spacing: column.spacing

    implicitHeight: column.implicitHeight + 2 * padding
    radius: Theme.cornerRadius
    color: Theme.cardSurface
    border.color: Theme.cardEdge

    Column {
        id: column

        x: card.padding
        y: card.padding
        width: card.width - 2 * card.padding
        spacing: Theme.spacing
    }
}
