import QtQuick
import Norvane

// A time of day, in minutes since midnight, on the clock of the user's locale.
Rectangle {
    id: picker

    required property string label
    required property int time
    required property bool hours24
    required property var dayHalves
    readonly property int hour: Math.floor(time / 60)
    readonly property int minute: time % 60

    signal picked(int time)

    implicitWidth: row.implicitWidth + 8
    implicitHeight: 26
    radius: 6
    color: Theme.control
    border.color: Theme.faded(Theme.primary, 0.14)
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    Row {
        id: row

        x: 4
        anchors.verticalCenter: parent.verticalCenter

        NumberSegment {
            id: hours

            label: picker.label + ", " + Texts.text("hours")
            alignment: Text.AlignRight
            from: 0
            to: 23
            value: picker.hour
            textFromValue: hour => picker.hours24 ? String(hour).padStart(2, "0") : String((hour + 11) % 12 + 1)
            valueFromText: text => picker.hourOf(parseInt(text))
            onValueModified: picker.picked(value * 60 + picker.minute)
            onWentRight: minutes.forceActiveFocus(Qt.TabFocusReason)
        }
        Label {
            anchors.verticalCenter: parent.verticalCenter
            text: ":"
            Accessible.ignored: true
        }
        NumberSegment {
            id: minutes

            label: picker.label + ", " + Texts.text("minutes")
            alignment: Text.AlignLeft
            from: 0
            to: 59
            value: picker.minute
            textFromValue: minute => String(minute).padStart(2, "0")
            valueFromText: text => parseInt(text)
            onValueModified: picker.picked(picker.hour * 60 + value)
            onWentLeft: hours.forceActiveFocus(Qt.TabFocusReason)
            onWentRight: if (half.visible) half.forceActiveFocus(Qt.TabFocusReason)
        }
        BaseButton {
            id: half

            visible: !picker.hours24
            implicitWidth: halfText.implicitWidth + 8
            implicitHeight: 22
            focusPolicy: Qt.StrongFocus
            text: picker.dayHalves[picker.hour < 12 ? 0 : 1]
            Accessible.name: text
            Accessible.description: picker.label
            onClicked: picker.picked((picker.time + 720) % 1440)

            Keys.onUpPressed: press()
            Keys.onDownPressed: press()
            Keys.onLeftPressed: minutes.forceActiveFocus(Qt.TabFocusReason)

            contentItem: Label {
                id: halfText

                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                text: half.text
                color: half.activeFocus ? Theme.onAccent : Theme.primary
                Accessible.ignored: true
            }
            background: Rectangle {
                radius: 4
                color: half.activeFocus ? Theme.accent : "transparent"
            }
        }
    }

    // What was typed, in the present half of the day where the clock has halves.
    function hourOf(typed) {
        if (hours24 || typed > 12 || typed === 0)
            return typed
        return typed % 12 + (hour < 12 ? 0 : 12)
    }
}
