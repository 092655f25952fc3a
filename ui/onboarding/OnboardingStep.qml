import QtQuick
import Norvane.Kit

// One step of the setup guide. Its title stands at the same height on each, below a picture where there is one.
Item {
    id: step

    required property string title
    property string symbol
    property color tint
    default property alias items: column.data
    property alias spacing: column.spacing
    property real gap: 16 // below the title

    TintedCircle {
        anchors.horizontalCenter: parent.horizontalCenter
        visible: step.symbol !== ""
        symbol: step.symbol
        tint: step.tint
        size: 60
        symbolSize: 34
        color: Theme.faded(tint, 0.15)
    }
    Label {
        id: heading

        y: 70
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: step.title
        font: Theme.weighted(Theme.title, Font.DemiBold)
        wrapMode: Text.Wrap
        Accessible.role: Accessible.Heading
    }
    Column {
        id: column

        anchors.top: heading.bottom
        anchors.topMargin: step.gap
        width: parent.width
        spacing: 14
    }
}
