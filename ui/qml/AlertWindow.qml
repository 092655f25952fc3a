import QtQuick
import Norvane

Window {
    id: window

    required property string message
    required property string information
    required property string button

    width: 320
    height: content.height + 48
    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    color: Theme.window
    title: "Norvane"
    flags: Qt.Dialog
    onVisibleChanged: if (visible) dismiss.forceActiveFocus(Qt.TabFocusReason)

    Column {
        id: content

        x: 24
        y: 24
        width: parent.width - 2 * x
        spacing: 10
        Accessible.role: Accessible.AlertMessage
        Accessible.name: window.message

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "clock.badge.exclamationmark"
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
            onClicked: window.close()
        }
    }
}
