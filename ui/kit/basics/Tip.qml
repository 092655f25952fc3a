import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

// A tooltip inside its window.
T.ToolTip {
    id: tip

    required property bool shown

    visible: shown
    delay: 600
    x: parent ? parent.width - width : 0
    y: -height - 4
    width: Math.min(implicitContentWidth + 2 * padding, 280)
    implicitHeight: contentItem.implicitHeight + 2 * padding
    padding: 6
    margins: 6
    closePolicy: T.Popup.NoAutoClose

    contentItem: Label {
        text: tip.text
        font: Theme.caption
        color: Theme.onTip
        wrapMode: Text.Wrap
    }
    background: Rectangle {
        radius: Theme.smallRadius
        color: Theme.tip
    }
}
