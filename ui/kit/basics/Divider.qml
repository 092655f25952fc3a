import QtQuick
import Norvane.Kit

Rectangle {
    width: parent.width
    height: 1
    color: Theme.faded(Theme.primary, 0.08)
}
