import QtQuick
import Norvane.Kit

// A label and what belongs to it.
Item {
    id: row

    property string label
    property alias leading: lead.data // at the left, in place of a label
    default property alias controls: slot.data
    readonly property real controlsWidth: slot.width

    width: parent ? parent.width : 0
    implicitHeight: Math.max(36, name.implicitHeight + 16, slot.implicitHeight + 12, lead.implicitHeight + 12)

    Divider {
        x: Theme.rowInset
        width: parent.width - x
        visible: row.y > 0
    }
    Label {
        id: name

        x: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        width: slot.x - x - 8
        text: row.label
        wrapMode: Text.Wrap
    }
    Row {
        id: lead

        x: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spacing
    }
    Row {
        id: slot

        anchors.right: parent.right
        anchors.rightMargin: Theme.rowInset
        anchors.verticalCenter: parent.verticalCenter
        spacing: Theme.spacing
    }
}
