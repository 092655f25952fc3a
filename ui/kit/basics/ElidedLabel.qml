import QtQuick

// One line; what does not fit is cut off, and told by a tooltip.
Label {
    id: label

    elide: Text.ElideRight

    HoverHandler {
        id: hover
    }
    Tip {
        text: label.text
        shown: hover.hovered && label.truncated
    }
}
