import QtQuick
import Norvane.Kit

// In the place of what is still being read.
Column {
    id: note

    required property string text

    spacing: Theme.wideSpacing

    Spinner {
        anchors.horizontalCenter: parent.horizontalCenter
    }
    Label {
        anchors.horizontalCenter: parent.horizontalCenter
        text: note.text
        color: Theme.secondary
    }
}
