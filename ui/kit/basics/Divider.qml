import QtQuick
import Norvane.Kit

Rectangle {
    width: parent.width
    height: 1
    color: Theme.separator
}
