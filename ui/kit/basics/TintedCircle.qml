import QtQuick
import Norvane.Kit

Rectangle {
    id: circle

    required property string symbol
    required property color tint
    property real size: 44
    property real symbolSize: 22

    implicitWidth: size
    implicitHeight: size
    radius: size / 2
    color: Theme.faded(tint, 0.16)

    Symbol {
        anchors.centerIn: parent
        name: circle.symbol
        color: circle.tint
        size: circle.symbolSize
    }
}
