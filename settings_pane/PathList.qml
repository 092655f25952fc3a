import QtQuick
import Norvane.Kit

Column {
    id: list

    required property QtObject paths
    required property Item below // the button

    signal removed(int row)

    width: parent ? parent.width : 0

    RowRepeater {
        below: list.below
        model: list.paths

        PathRow {
            id: row

            required property int index
            required property string path
            required property bool removable
            readonly property Item remover: remove

            symbol: "folder"
            name: path

            IconButton {
                id: remove

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
