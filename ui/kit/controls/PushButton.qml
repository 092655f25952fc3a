import QtQuick
import Norvane.Kit

// A button with a surface: prominent in a colour, or bordered.
BaseButton {
    id: button

    property string symbol
    property bool prominent: false
    property color tint: Theme.accent
    property bool small: false
    property color ink: prominent ? (tint === Theme.accent ? Theme.onAccent : Theme.onTint) : Theme.primary

    implicitWidth: Math.ceil(Math.max(implicitContentWidth + leftPadding + rightPadding, 44)) // edges on pixels
    implicitHeight: small ? Theme.smallControlHeight : Theme.controlHeight
    leftPadding: small ? 7 : 12
    rightPadding: leftPadding
    font: small ? Theme.caption : Theme.weighted(Theme.body, prominent ? Font.DemiBold : Font.Normal)
    opacity: enabled ? 1 : prominent ? Theme.pressedOpacity : Theme.disabledOpacity

    contentItem: Item { // qmllint disable deferred-property-id
        implicitWidth: row.implicitWidth

        Row {
            id: row

            anchors.centerIn: parent
            spacing: Theme.closeSpacing

            Symbol {
                anchors.verticalCenter: parent.verticalCenter
                visible: button.symbol !== ""
                name: button.symbol
                color: button.ink
                size: 14
            }
            Label {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                font: button.font
                color: button.ink
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        radius: button.small ? Theme.smallRadius : Theme.controlRadius
        color: button.prominent ? button.tint : Theme.control
        border.width: button.prominent ? 0 : 1
        border.color: Theme.controlEdge

        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: Theme.faded(button.prominent ? Theme.shade : Theme.primary,
                               button.down ? 0.14 : button.hovered && button.enabled ? 0.06 : 0)
        }
        FocusRing {
            shown: button.visualFocus
        }
    }
}
