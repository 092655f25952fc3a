import QtQuick
import Norvane.Kit

Label {
    width: parent.width
    horizontalAlignment: Text.AlignHCenter
    color: Theme.secondary
    lineHeight: 1.15
    wrapMode: Text.Wrap
}
