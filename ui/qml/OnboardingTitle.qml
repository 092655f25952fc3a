import QtQuick
import Norvane

Label {
    width: parent.width
    horizontalAlignment: Text.AlignHCenter
    font: Theme.weighted(Theme.title, 600)
    wrapMode: Text.Wrap
    Accessible.role: Accessible.Heading
}
