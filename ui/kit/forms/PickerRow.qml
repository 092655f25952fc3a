import QtQuick
import Norvane.Kit

FormRow {
    id: row

    required property var choices
    required property var value

    property alias placeholder: picker.placeholder

    signal picked(var value)

    function takeFocus(reason) {
        picker.forceActiveFocus(reason)
    }

    DropDown {
        id: picker

        label: row.label
        choices: row.choices
        value: row.value
        onPicked: value => row.picked(value)
    }
}
