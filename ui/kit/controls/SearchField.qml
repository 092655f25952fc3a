import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

T.TextField {
    id: field

    signal edited(string text)
    signal wentDown

    implicitHeight: 28
    leftPadding: 28
    rightPadding: 8
    font: Theme.body
    color: Theme.primary
    selectionColor: Theme.accent
    selectedTextColor: Theme.onAccent
    placeholderText: Texts.text("Search")
    verticalAlignment: TextInput.AlignVCenter
    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText
    onTextEdited: edited(text)

    Keys.onDownPressed: wentDown()

    background: Rectangle {
        radius: Theme.controlRadius
        color: Theme.control
        border.width: field.activeFocus ? 2 : 1
        border.color: field.activeFocus ? Theme.ring : Theme.controlEdge

        Symbol {
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            name: "magnifyingglass"
            color: Theme.secondary
            size: 14
        }
        Label {
            x: 28
            anchors.verticalCenter: parent.verticalCenter
            visible: field.length === 0
            text: field.placeholderText
            color: Theme.tertiary
            Accessible.ignored: true
        }
    }
}
