import QtQuick
import Norvane.Kit

// An installed application that can be ticked.
Rectangle {
    id: choice

    required property int index
    required property string appId
    required property string name
    required property string icon
    required property bool chosen
    property bool current: false

    signal toggled

    height: 42
    radius: Theme.controlRadius
    color: Theme.faded(Theme.primary, current ? 0.1 : hover.hovered ? 0.05 : 0)
    Accessible.role: Accessible.CheckBox
    Accessible.name: name
    Accessible.description: appId
    Accessible.checkable: true
    Accessible.checked: chosen
    Accessible.onPressAction: toggled()
    Accessible.onToggleAction: toggled()

    Rectangle {
        x: 10
        anchors.verticalCenter: parent.verticalCenter
        width: 16
        height: 16
        radius: Theme.itemRadius
        color: choice.chosen ? Theme.accent : Theme.control
        border.width: choice.chosen ? 0 : 1
        border.color: Theme.faded(Theme.primary, 0.25)

        Symbol {
            anchors.centerIn: parent
            visible: choice.chosen
            name: "checkmark"
            color: Theme.onAccent
            size: 11
        }
    }
    Rectangle {
        anchors.fill: picture
        visible: picture.implicitWidth <= 1 // there is no such icon
        radius: Theme.floatingRadius
        color: Theme.faded(Theme.primary, 0.1)

        Label {
            anchors.centerIn: parent
            text: choice.name.charAt(0)
            font: Theme.weighted(Theme.body, Font.DemiBold)
            color: Theme.secondary
            Accessible.ignored: true
        }
    }
    Image {
        id: picture

        readonly property int pixels: Math.round(28 * Screen.devicePixelRatio)

        x: 36
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 28
        sourceSize.width: pixels
        sourceSize.height: pixels
        source: "image://application/" + encodeURIComponent(choice.icon)
        Accessible.ignored: true
    }
    Column {
        anchors.left: picture.right
        anchors.leftMargin: 10
        anchors.right: parent.right
        anchors.rightMargin: 14
        anchors.verticalCenter: parent.verticalCenter

        Label {
            width: parent.width
            text: choice.name
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        Label {
            width: parent.width
            text: choice.appId
            font: Theme.caption
            color: Theme.secondary
            elide: Text.ElideMiddle
            Accessible.ignored: true
        }
    }
    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: choice.toggled()
    }
}
