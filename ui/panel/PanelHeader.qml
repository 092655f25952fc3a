import QtQuick
import Norvane.Kit
import Norvane.Panel

Item {
    id: header

    required property PanelViewModel model
    readonly property color tint: Theme.tints[model.content.tint]

    implicitHeight: Math.max(circle.height, texts.implicitHeight)

    TintedCircle {
        id: circle

        anchors.verticalCenter: parent.verticalCenter
        symbol: header.model.content.symbol
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
            text: header.model.content.title
            font: Theme.weighted(Theme.title3, Font.DemiBold)
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            text: header.model.content.subtitle
            font: Theme.caption
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
    }
}
