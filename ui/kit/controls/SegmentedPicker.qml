import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

// One of a few choices, all in sight.
Rectangle {
    id: picker

    required property string title
    required property var labels
    required property int selected

    signal picked(int index)

    implicitWidth: row.implicitWidth + 4
    implicitHeight: 28
    radius: Theme.floatingRadius
    color: Theme.groove
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    function choose(index) {
        if (index < 0 || index >= labels.length)
            return
        picked(index)
        segments.itemAt(index).forceActiveFocus(Qt.TabFocusReason)
    }

    Row {
        id: row

        x: 2
        y: 2

        Repeater {
            id: segments

            model: picker.labels

            T.RadioButton {
                id: segment

                required property int index
                required property string modelData
                readonly property bool selected: picker.selected === segment.index

                width: (picker.width - 4) / picker.labels.length
                height: picker.height - 4
                focusPolicy: selected || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
                text: segment.modelData
                checked: selected
                Accessible.name: text
                Accessible.onPressAction: clicked()
                Accessible.onToggleAction: clicked()
                onClicked: picker.picked(segment.index)

                Keys.forwardTo: ReturnKeys {
                    onPressed: segment.clicked()
                }
                Keys.onLeftPressed: picker.choose(segment.index - 1)
                Keys.onRightPressed: picker.choose(segment.index + 1)

                contentItem: Label {
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    text: segment.text
                    font: Theme.weighted(Theme.body, segment.selected ? Font.DemiBold : Font.Normal)
                    Accessible.ignored: true
                }
                background: Rectangle {
                    radius: Theme.smallRadius
                    color: segment.selected ? Theme.control : "transparent"
                    border.width: segment.selected ? 1 : 0
                    border.color: Theme.faded(Theme.primary, 0.1)

                    FocusRing {
                        shown: segment.visualFocus
                    }
                }
            }
        }
    }
}
