import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

// One of several choices, each a map with "label" and "value". A value that is no choice shows as the placeholder.
T.ComboBox {
    id: picker

    required property string label
    required property var choices
    required property var value
    property string placeholder
    property bool opening: false

    signal picked(var value)

    implicitWidth: widest.width + 44
    implicitHeight: 24
    focusPolicy: Qt.StrongFocus
    model: choices
    textRole: "label"
    currentIndex: choices.findIndex(choice => choice.value === value)
    Accessible.role: Accessible.ComboBox
    Accessible.name: label
    Accessible.description: displayText
    onActivated: index => picked(choices[index].value)

    // The release of the key would take the highlighted choice at once, were the list open by then.
    Keys.onReturnPressed: opening = !popup.visible
    Keys.onEnterPressed: opening = !popup.visible
    // None of these takes another choice unseen.
    Keys.onUpPressed: event => showFor(event)
    Keys.onDownPressed: event => showFor(event)
    Keys.onPressed: event => {
        if (!popup.visible && (event.key === Qt.Key_Home || event.key === Qt.Key_End))
            event.accepted = (Window.window as FixedWindow).scroll(event.key)
    }
    Keys.onReleased: event => {
        if (!opening || event.isAutoRepeat)
            return
        opening = false
        event.accepted = true
        popup.open()
    }

    function showFor(event) {
        event.accepted = !popup.visible
        if (!popup.visible)
            popup.open()
    }

    TextMetrics {
        id: widest

        font: Theme.body
        text: picker.choices.map(choice => choice.label).reduce((a, b) => a.length > b.length ? a : b, "")
    }

    contentItem: Label {
        leftPadding: 10
        rightPadding: 24
        verticalAlignment: Text.AlignVCenter
        text: picker.currentIndex < 0 ? picker.placeholder : picker.displayText
        color: picker.currentIndex < 0 ? Theme.secondary : Theme.primary
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    indicator: Symbol {
        x: picker.width - width - 7
        anchors.verticalCenter: parent.verticalCenter
        name: "chevron.up.chevron.down"
        color: Theme.secondary
        size: 12
    }
    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.control
        border.color: Theme.controlEdge

        FocusRing {
            shown: picker.visualFocus
        }
    }
    delegate: T.ItemDelegate {
        id: choice

        required property int index
        required property var modelData

        width: ListView.view.width
        height: 24
        text: choice.modelData.label
        highlighted: picker.highlightedIndex === choice.index
        Accessible.role: Accessible.ListItem
        Accessible.name: text
        Accessible.selected: picker.currentIndex === choice.index

        contentItem: Item {
            Symbol {
                x: 6
                anchors.verticalCenter: parent.verticalCenter
                visible: picker.currentIndex === choice.index
                name: "checkmark"
                color: choice.highlighted ? Theme.onAccent : Theme.primary
                size: 11
            }
            Label {
                x: 22
                anchors.verticalCenter: parent.verticalCenter
                text: choice.text
                color: choice.highlighted ? Theme.onAccent : Theme.primary
                Accessible.ignored: true
            }
        }
        background: Rectangle {
            radius: Theme.itemRadius
            color: choice.highlighted ? Theme.accent : "transparent"
        }
    }
    popup: T.Popup {
        y: picker.height + 3
        width: Math.max(picker.width, widest.width + 50)
        implicitHeight: contentItem.implicitHeight + 2 * padding
        padding: 5
        margins: 6

        contentItem: ListView {
            implicitHeight: contentHeight
            interactive: false
            model: picker.popup.visible ? picker.delegateModel : null // qmllint disable type
            currentIndex: picker.highlightedIndex
        }
        background: Rectangle {
            radius: Theme.floatingRadius
            color: Theme.control
            border.color: Theme.floatingEdge
        }
    }
}
