import QtQuick
import Norvane

Column {
    id: list

    required property var paths

    signal removed(int row)

    width: parent ? parent.width : 0

    Repeater {
        model: list.paths

        PathRow {
            id: row

            required property int index
            required property string path
            required property bool removable

            symbol: "folder"
            name: path

            IconButton {
                anchors.verticalCenter: parent.verticalCenter
                visible: row.removable
                symbol: "minus.circle.fill"
                label: Texts.text("Remove")
                Accessible.description: row.path
                onClicked: list.removed(row.index)
            }
        }
    }
}
