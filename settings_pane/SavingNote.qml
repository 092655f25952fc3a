import QtQuick
import Norvane.Kit

// In the place of what is being changed.
Row {
    spacing: 7

    Spinner {
        anchors.verticalCenter: parent.verticalCenter
        size: 14
    }
    Label {
        anchors.verticalCenter: parent.verticalCenter
        text: Texts.text("Saving changes…")
        font: Theme.callout
        color: Theme.secondary
    }
}
