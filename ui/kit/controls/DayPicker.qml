import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

// Some days of the week; bit 0 of the mask is Sunday. One stop of Tab; the arrow keys go from day to day.
Row {
    id: picker

    required property int days
    required property var weekdays
    property int current: 0 // where the keyboard is, or was

    signal picked(int days)

    spacing: Theme.tightSpacing
    Accessible.role: Accessible.Grouping

    function goTo(index) {
        dayButtons.itemAt(index)?.forceActiveFocus(Qt.TabFocusReason)
    }

    Repeater {
        id: dayButtons

        model: picker.weekdays

        T.CheckBox {
            id: day

            required property int index
            required property var modelData
            readonly property bool selected: (picker.days >> day.modelData.bit & 1) === 1

            implicitWidth: 26
            implicitHeight: 26
            focusPolicy: picker.current === day.index ? Qt.StrongFocus : Qt.ClickFocus
            text: day.modelData.symbol
            checked: selected
            Accessible.name: day.modelData.name
            Accessible.onPressAction: clicked()
            Accessible.onToggleAction: clicked()
            onClicked: picker.picked(picker.days ^ (1 << day.modelData.bit))
            onActiveFocusChanged: if (activeFocus) picker.current = day.index

            Keys.onLeftPressed: picker.goTo(day.index - 1)
            Keys.onRightPressed: picker.goTo(day.index + 1)
            Keys.forwardTo: ReturnKeys {
                onPressed: day.clicked()
            }

            contentItem: Label {
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
                text: day.text
                font: Theme.weighted(Theme.subheadline, Font.DemiBold)
                color: day.selected ? Theme.onTint : Theme.secondary
                Accessible.ignored: true
            }
            background: Rectangle {
                radius: 13
                color: day.selected ? Theme.accent : Theme.groove

                FocusRing {
                    shown: day.visualFocus
                    gap: 1
                }
            }
            Tip {
                text: day.modelData.name
                shown: day.hovered
            }
        }
    }
}
