import QtQuick
import Norvane.Kit

// Rows on one surface, with a heading above and an explanation below.
Column {
    id: section

    property string header
    property string footer
    default property alias rows: card.items

    width: parent ? parent.width : 0
    spacing: Theme.closeSpacing

    Label {
        visible: text !== ""
        text: section.header
        font: Theme.weighted(Theme.callout, Font.DemiBold)
        Accessible.role: Accessible.Heading
    }
    Card {
        id: card

        width: parent.width
        padding: 0
        spacing: 0
        visible: implicitHeight > 0
    }
    Label {
        width: parent.width
        visible: text !== ""
        text: section.footer
        font: Theme.caption
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
}
