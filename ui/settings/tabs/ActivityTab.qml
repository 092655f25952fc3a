import QtQuick
import Norvane.Kit
import Norvane.Settings

Item {
    id: tab

    required property ActivityList activity
    readonly property bool empty: activity.loaded && list.count === 0
    readonly property Flickable scrolled: list

    signal openLogFile

    Label {
        anchors.centerIn: parent
        visible: tab.empty
        text: Texts.text("No activity recorded yet")
        color: Theme.secondary
    }
    ListView {
        id: list

        width: parent.width
        anchors.top: parent.top
        anchors.bottom: footer.top
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: count > 0
        keyNavigationEnabled: false // there is no current entry
        model: tab.activity.entries
        topMargin: 4
        bottomMargin: 4
        Accessible.role: Accessible.List
        Accessible.name: Texts.text("Activity")
        delegate: LogEntryRow {
            width: list.width
        }

        Rectangle {
            anchors.fill: parent
            anchors.margins: 1
            visible: list.activeFocus
            color: "transparent"
            border.width: 2
            border.color: Theme.ring
        }
        ScrollIndicator {
            flickable: list
        }
    }
    Item {
        id: footer

        anchors.bottom: parent.bottom
        width: parent.width
        height: visible ? 34 : 0
        visible: list.count > 0

        Divider {}
        Label {
            x: 14
            anchors.verticalCenter: parent.verticalCenter
            text: tab.activity.countText
            font: Theme.caption2
            color: Theme.tertiary
        }
        PushButton {
            anchors.right: parent.right
            anchors.rightMargin: 14
            anchors.verticalCenter: parent.verticalCenter
            small: true
            text: Texts.text("Open Log File")
            onClicked: tab.openLogFile()
        }
    }
}
