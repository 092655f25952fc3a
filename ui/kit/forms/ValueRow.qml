import QtQuick
import Norvane.Kit

FormRow {
    id: row

    required property string value

    ElidedLabel {
        width: Math.min(implicitWidth, row.width / 2)
        text: row.value
        color: Theme.secondary
        elide: Text.ElideMiddle
        Accessible.name: row.label + ": " + row.value
    }
}
