import QtQuick
import Norvane.Kit

// How much of something is shown, at its right edge; draggable.
Item {
    id: indicator

    required property Flickable flickable
    readonly property real room: flickable.height
    readonly property bool needed: flickable.contentHeight > room + 1

    parent: flickable
    anchors.right: parent.right
    width: 11
    height: room
    visible: needed
    Accessible.ignored: true

    Rectangle {
        id: handle

        readonly property real travel: indicator.room - height

        x: 3
        y: indicator.needed ? indicator.flickable.contentY / (indicator.flickable.contentHeight - indicator.room) * travel : 0
        width: 5
        height: Math.max(24, indicator.room * indicator.room / indicator.flickable.contentHeight)
        radius: 2.5
        color: Theme.faded(Theme.primary, hover.hovered || drag.active ? 0.45 : 0.22)
    }
    HoverHandler {
        id: hover
    }
    DragHandler {
        id: drag

        property real start

        target: null
        onActiveChanged: if (active) start = indicator.flickable.contentY
        onActiveTranslationChanged: {
            if (!active)
                return
            const range = indicator.flickable.contentHeight - indicator.room
            indicator.flickable.contentY = Math.max(0, Math.min(range, start + activeTranslation.y / handle.travel * range))
        }
    }
}
