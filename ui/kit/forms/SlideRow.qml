import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

// A whole number on a line.
FormRow {
    id: row

    required property string name
    required property real from
    required property real to
    required property real value
    required property string told // the value with its unit

    signal moved(real value)

    T.Slider {
        id: slider

        anchors.verticalCenter: parent.verticalCenter
        width: row.width - 24 - hours.width - 8
        implicitHeight: 22
        focusPolicy: Qt.StrongFocus
        from: row.from
        to: row.to
        stepSize: 1
        snapMode: T.Slider.SnapAlways
        value: row.value
        Accessible.role: Accessible.Slider
        Accessible.name: row.name
        Accessible.description: hours.text
        onMoved: row.moved(value)

        background: Rectangle {
            x: slider.leftPadding
            y: (slider.height - height) / 2
            width: slider.availableWidth
            height: 4
            radius: 2
            color: Theme.faded(Theme.primary, 0.14)

            Rectangle {
                width: slider.visualPosition * (parent.width - 18) + 9
                height: parent.height
                radius: 2
                color: Theme.accent
            }
        }
        handle: Rectangle {
            x: slider.visualPosition * (slider.availableWidth - width)
            y: (slider.height - height) / 2
            width: 18
            height: 18
            radius: 9
            color: slider.pressed ? Qt.darker(Theme.onTint, 1.06) : Theme.onTint
            border.color: Theme.faded(Theme.shade, 0.22)

            FocusRing {
                shown: slider.visualFocus
            }
        }
    }
    Label {
        id: hours

        anchors.verticalCenter: parent.verticalCenter
        width: 40
        horizontalAlignment: Text.AlignRight
        text: row.told
    }
}
