import QtQuick

FormRow {
    id: row

    required property var choices
    required property var value

    signal picked(var value)

    DropDown {
        label: row.label
        choices: row.choices
        value: row.value
        onPicked: value => row.picked(value)
    }
}
