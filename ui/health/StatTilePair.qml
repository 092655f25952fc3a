import QtQuick
import Norvane.Kit

// Two figures side by side, equally high.
Row {
    id: pair

    required property var first
    required property var second
    readonly property real half: (width - spacing) / 2

    spacing: Theme.wideSpacing

    StatTile {
        id: left

        width: pair.half
        height: Math.max(implicitHeight, right.implicitHeight)
        tile: pair.first
    }
    StatTile {
        id: right

        width: pair.half
        height: Math.max(implicitHeight, left.implicitHeight)
        tile: pair.second
    }
}
