import QtQuick
import Norvane.Kit

// Leads to a web page.
PlainButton {
    font: Theme.callout
    color: Theme.accent
    Accessible.role: Accessible.Link

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
