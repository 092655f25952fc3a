import QtQuick
import Norvane.Kit

// Something is going on that will take a moment.
Item {
    id: spinner

    property real size: 20

    implicitWidth: size
    implicitHeight: size
    Accessible.ignored: true

    Item {
        id: spokes

        anchors.fill: parent

        Repeater {
            model: 8

            Rectangle {
                id: spoke

                required property int index

                x: (spinner.size - width) / 2
                width: spinner.size * 0.1
                height: spinner.size * 0.28
                radius: width / 2
                color: Theme.primary
                opacity: 0.15 + spoke.index * 0.09
                antialiasing: true
                transform: Rotation {
                    origin.x: spinner.size * 0.05
                    origin.y: spinner.size / 2
                    angle: spoke.index * 45
                }
            }
        }
    }
    Timer {
        interval: 100
        repeat: true
        running: spinner.visible
        onTriggered: spokes.rotation = (spokes.rotation + 45) % 360
    }
}
