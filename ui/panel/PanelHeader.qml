import QtQuick
import Norvane.Kit

Item {
    id: header

    required property var content
    readonly property color tint: [Theme.accent, Theme.red, Theme.orange, Theme.yellow, Theme.secondary,
        Theme.green][content.tint]

    implicitHeight: Math.max(circle.height, texts.implicitHeight)

    TintedCircle {
        id: circle

        anchors.verticalCenter: parent.verticalCenter
        symbol: header.content.symbol
        tint: header.tint
    }
    Column {
        id: texts

        anchors.left: circle.right
        anchors.leftMargin: 12
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2

        Label {
            width: parent.width
            text: header.content.title
            font: Theme.weighted(Theme.title3, 600)
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            text: header.content.subtitle
            font: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
}
