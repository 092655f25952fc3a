import QtQuick
import Norvane.Kit

// Groups of controls below each other; scrolls to the one that the keyboard is on.
Flickable {
    id: form

    default property alias sections: column.data
    property real inset: 16
    property real verticalInset: 14
    property alias spacing: column.spacing
    readonly property Item focused: Window.activeFocusItem
    readonly property Flickable scrolled: form // what a window that shows it scrolls
    property bool goesToEnd: false

    contentWidth: width
    contentHeight: column.height + 2 * column.y
    boundsBehavior: Flickable.StopAtBounds
    pixelAligned: true
    clip: true
    onFocusedChanged: Qt.callLater(reveal) // qmllint disable type

    function contains(item) {
        for (let ancestor = item; ancestor; ancestor = ancestor.parent) {
            if (ancestor === column)
                return true
        }
        return false
    }

    function reveal() {
        const item = focused
        if (!item || !contains(item))
            return
        const margin = 12
        const top = item.mapToItem(contentItem, 0, 0).y - margin
        const bottom = top + item.height + 2 * margin
        const lowest = Math.max(0, contentHeight - height)
        contentY = Math.max(0, Math.min(lowest, Math.min(top, Math.max(contentY, bottom - height))))
    }

    /// Scrolls to the end, once what was just added there has its place.
    function showEnd() {
        goesToEnd = true
    }

    Connections {
        target: form.Window.window
        enabled: form.goesToEnd

        function onAfterAnimating() {
            form.goesToEnd = false
            form.contentY = Math.max(0, form.contentHeight - form.height)
        }
    }
    Column {
        id: column

        x: form.inset
        y: form.verticalInset
        width: form.width - 2 * x
        spacing: 16
    }
    ScrollIndicator {
        flickable: form
    }
}
