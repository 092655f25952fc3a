import QtQuick
import Norvane.Kit

// A small picture of the setting that the user is to look for.
Column {
    id: picture

    topPadding: 6
    spacing: 5

    Label {
        text: Texts.text("What you're looking for:")
        font: Theme.caption
        color: Theme.secondary
    }
    Rectangle {
        width: parent.width
        height: 34
        radius: Theme.controlRadius
        color: Theme.figureSurface
        border.color: Theme.separator

        Label {
            x: 10
            anchors.verticalCenter: parent.verticalCenter
            text: Texts.text("Back up frequency:")
            font: Theme.callout
        }
        Rectangle {
            anchors.right: parent.right
            anchors.rightMargin: Theme.spacing
            anchors.verticalCenter: parent.verticalCenter
            width: value.width + 40
            height: 22
            radius: Theme.smallRadius
            color: Theme.control
            border.color: Theme.controlEdge

            Label {
                id: value

                x: 10
                anchors.verticalCenter: parent.verticalCenter
                text: Texts.text("Manually")
                font: Theme.callout
            }
            Symbol {
                anchors.right: parent.right
                anchors.rightMargin: 6
                anchors.verticalCenter: parent.verticalCenter
                name: "chevron.up.chevron.down"
                color: Theme.secondary
                size: 11
            }
        }
    }
}
