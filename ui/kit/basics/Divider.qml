import QtQuick
import Norvane

Rectangle {
    width: parent.width
    height: 1
    color: Theme.faded(Theme.primary, 0.08)
}
