import QtQuick
import Norvane.Kit

// One of the project's drawings, sharp at every scale. `size` is its grid's, of which the ink takes five sixths: 13 for as
// much ink as 11 points of text have.
Image {
    id: symbol

    required property string name
    property color color: Theme.primary
    property real size: 16
    readonly property int pixels: Math.round(size * Screen.devicePixelRatio)

    width: size
    height: size
    sourceSize.width: pixels
    sourceSize.height: pixels
    source: name === "" ? "" : "image://symbol/" + name + "/" + color
    fillMode: Image.PreserveAspectFit
    Accessible.ignored: true
}
