import QtQuick
import Norvane.Kit

// A drive or a folder; why it cannot be used stands below its name.
BaseButton {
    id: offer

    required property string name
    required property string details
    required property bool network
    required property bool usable
    required property bool chosen

    width: parent ? parent.width : 0
    implicitHeight: Math.max(48, texts.implicitHeight + 14)
    enabled: usable
    Accessible.name: name
    Accessible.description: details
    Accessible.checkable: true
    Accessible.checked: chosen

    contentItem: Item { // qmllint disable deferred-property-id
        Symbol {
            x: Theme.rowInset
            anchors.verticalCenter: parent.verticalCenter
            name: offer.network ? "network" : "internaldrive"
            color: offer.usable ? Theme.secondary : Theme.tertiary
            size: 22
        }
        Column {
            id: texts

            x: 46
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - x - 44
            spacing: 1

            Label {
                width: parent.width
                text: offer.name
                color: offer.usable ? Theme.primary : Theme.secondary
                elide: Text.ElideMiddle
                Accessible.ignored: true
            }
            Label {
                width: parent.width
                text: offer.details
                font: Theme.caption
                color: offer.usable ? Theme.secondary : Theme.orange
                elide: offer.usable ? Text.ElideMiddle : Text.ElideNone
                wrapMode: offer.usable ? Text.NoWrap : Text.Wrap
                Accessible.ignored: true
            }
        }
        Symbol {
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            visible: offer.chosen
            name: "checkmark.circle.fill"
            color: Theme.accent
            size: 18
        }
    }
    background: Item {
        Divider {
            x: Theme.rowInset
            width: parent.width - x
            visible: offer.y > 0
        }
        Rectangle {
            anchors.fill: parent
            anchors.margins: 4
            radius: Theme.smallRadius
            color: Theme.faded(Theme.primary, offer.chosen ? 0.07 : offer.hovered ? 0.04 : 0)

            FocusRing {
                shown: offer.visualFocus
                gap: -2
            }
        }
    }
}
