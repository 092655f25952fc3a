import QtQuick
import Norvane.Kit

FormRow {
    id: row

    required property int index
    required property string name
    required property string bundleID
    readonly property Item remover: remove

    signal removed

    implicitHeight: 44

    Column {
        anchors.verticalCenter: parent.verticalCenter
        width: row.width - 24 - 32

        Label {
            width: parent.width
            text: row.name
            elide: Text.ElideRight
        }
        Label {
            width: parent.width
            text: row.bundleID
            font: Theme.caption
            color: Theme.secondary
            elide: Text.ElideMiddle
        }
    }
    IconButton {
        id: remove

        anchors.verticalCenter: parent.verticalCenter
        symbol: "minus.circle.fill"
        label: Texts.text("Remove")
        Accessible.description: row.name
        onClicked: row.removed()
    }
}
