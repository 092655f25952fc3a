import QtQuick
import Norvane.Kit

FixedWindow {
    id: window

    required property string message
    required property string information
    required property string button
    required property string otherwise
    required property string symbol
    property bool pressed: false
    readonly property int fittingHeight: content.height + 2 * content.y

    width: 320
    height: fittingHeight
    minimumHeight: fittingHeight // not the height: it could not grow with the text then
    maximumHeight: fittingHeight
    title: "Norvane"
    flags: Qt.Dialog
    onVisibleChanged: if (visible) dismiss.forceActiveFocus(Qt.TabFocusReason)

    Column {
        id: content

        x: 24
        y: 24
        width: window.width - 2 * x
        spacing: Theme.wideSpacing
        Accessible.role: Accessible.AlertMessage
        Accessible.name: window.message

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: window.symbol
            color: Theme.brand
            size: 56
        }
        Label {
            width: parent.width
            horizontalAlignment: Text.AlignHCenter
            text: window.message
            font: Theme.headline
            wrapMode: Text.Wrap
            Accessible.role: Accessible.Heading
        }
        Label {
            width: parent.width
            bottomPadding: 6
            horizontalAlignment: Text.AlignHCenter
            text: window.information
            font: Theme.callout
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
        PushButton {
            id: dismiss

            width: parent.width
            prominent: true
            text: window.button
            onClicked: {
                window.pressed = true
                window.close()
            }
        }
        PushButton {
            width: parent.width
            visible: window.otherwise !== ""
            text: window.otherwise
            onClicked: window.close()
        }
    }
}
