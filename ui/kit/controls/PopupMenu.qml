import QtQuick
import QtQuick.Templates as T
import Norvane.Kit

T.Menu {
    id: menu

    implicitWidth: contentItem.implicitWidth + 2 * padding
    implicitHeight: contentItem.implicitHeight + 2 * padding
    padding: 5
    margins: 6
    modal: false

    contentItem: ListView {
        implicitWidth: 150
        implicitHeight: contentHeight
        interactive: false
        model: menu.contentModel
        currentIndex: menu.currentIndex
    }
    background: Rectangle {
        radius: Theme.floatingRadius
        color: Theme.control
        border.color: Theme.floatingEdge
    }
}
