import QtQuick
import Norvane.Kit

// Every drawing in the sizes in which the windows show them.
Window {
    id: page

    required property list<string> names
    readonly property int columns: 3

    width: 3 * 330
    height: grid.implicitHeight + 24
    color: Theme.window

    Grid {
        id: grid

        x: 12
        y: 12
        columns: page.columns

        Repeater {
            model: page.names

            Row {
                id: line

                required property string modelData

                width: 326
                height: 56
                spacing: 8

                Repeater {
                    model: [12, 16, 24, 48]

                    Symbol {
                        required property int modelData

                        anchors.verticalCenter: parent.verticalCenter
                        name: line.modelData
                        size: modelData
                    }
                }
                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: line.modelData
                    font: Theme.caption2
                    color: Theme.secondary
                }
            }
        }
    }
}
