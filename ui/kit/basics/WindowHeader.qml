import QtQuick
import Norvane.Kit

// What a window is about, in short.
Item {
    id: header

    required property string symbol
    required property color tint
    required property string title
    required property string subtitle
    property real symbolSize: 20

    implicitHeight: Math.max(circle.height, texts.implicitHeight)

    TintedCircle {
        id: circle

        symbol: header.symbol
        tint: header.tint
        color: Theme.faded(tint, 0.15)
        symbolSize: header.symbolSize
    }
    Column {
        id: texts

        anchors.left: circle.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        y: Math.max(0, (circle.height - implicitHeight) / 2)
        spacing: 2

        Label {
            width: parent.width
            text: header.title
            font: Theme.weighted(Theme.title3, Font.DemiBold)
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            visible: text !== ""
            text: header.subtitle
            font: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
}
