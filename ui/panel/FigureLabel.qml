import QtQuick
import Norvane.Kit

// One line whose digits all take the same room, so that a number that grows leaves the rest in its place.
Row {
    id: line

    required property string text
    property font font: Theme.body
    property color color: Theme.primary

    TextMetrics {
        id: digit

        font: line.font
        text: "0"
    }
    Repeater {
        model: line.text.length

        Label {
            id: character

            required property int index

            text: line.text.charAt(character.index)
            width: /\d/.test(text) ? Math.ceil(digit.advanceWidth) : implicitWidth
            horizontalAlignment: Text.AlignHCenter
            font: line.font
            color: line.color
            Accessible.ignored: true
        }
    }
}
