import QtQuick
import Norvane.Kit

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
    radius: Theme.controlRadius
    color: Theme.control
    border.color: Theme.controlEdge
    Accessible.role: Accessible.Grouping
    Accessible.name: label

    Row {
        id: row

        x: 4
        anchors.verticalCenter: parent.verticalCenter

        NumberSegment {
            id: hours

            label: picker.label + ", " + Texts.text("hours")
            horizontalAlignment: Text.AlignRight
            digits: ClockDigits.hour(picker.time, picker.hours24)
            value: picker.hour
            onTyped: digits => picker.pick(ClockDigits.withHour(picker.time, digits, picker.hours24))
            onStepped: by => picker.pick(ClockDigits.withHourStepped(picker.time, by))
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
            horizontalAlignment: Text.AlignLeft
            digits: ClockDigits.minute(picker.time)
            value: picker.minute
            onTyped: digits => picker.pick(ClockDigits.withMinute(picker.time, digits))
            onStepped: by => picker.pick(ClockDigits.withMinuteStepped(picker.time, by))
            onWentLeft: hours.forceActiveFocus(Qt.TabFocusReason)
            onWentRight: if (half.visible) half.forceActiveFocus(Qt.TabFocusReason)
        }
        BaseButton {
            id: half

            visible: !picker.hours24
            implicitWidth: implicitContentWidth + 8
            implicitHeight: 22
            focusPolicy: Qt.StrongFocus
            text: picker.dayHalves[picker.hour < 12 ? 0 : 1]
            Accessible.name: text
            Accessible.description: picker.label
            onClicked: picker.pick(ClockDigits.inOtherHalf(picker.time))

            Keys.onUpPressed: press()
            Keys.onDownPressed: press()
            Keys.onLeftPressed: minutes.forceActiveFocus(Qt.TabFocusReason)

            contentItem: Label {
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                text: half.text
                color: half.activeFocus ? Theme.onAccent : Theme.primary
                Accessible.ignored: true
            }
            background: Rectangle {
                radius: Theme.itemRadius
                color: half.activeFocus ? Theme.accent : "transparent"
            }
        }
    }

    function pick(time) {
        if (time !== picker.time)
            picked(time)
    }
}
