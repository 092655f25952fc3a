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
        x: 12
        width: parent.width - x
        visible: row.y > 0
    }
    Label {
        id: name

        x: 12
        anchors.verticalCenter: parent.verticalCenter
        width: slot.x - x - 8
        text: row.label
        wrapMode: Text.Wrap
    }
    Row {
        id: lead

        x: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
    }
    Row {
        id: slot

        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        spacing: 8
    }
}
