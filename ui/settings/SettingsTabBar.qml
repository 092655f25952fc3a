import QtQuick
import QtQuick.Templates as T
import Norvane.Kit
import Norvane.Settings

Rectangle {
    id: bar

    required property SettingsViewModel model

    implicitHeight: 58
    color: Theme.barSurface
    Accessible.role: Accessible.PageTabList
    Accessible.name: Texts.text("Settings")

    function focusSelected() {
        const tab = tabs.itemAt(model.selectedTab)
        if (tab && !tab.activeFocus)
            tab.forceActiveFocus(Qt.OtherFocusReason)
    }

    function select(index) {
        const wrapped = (index + tabs.count) % tabs.count
        tabs.itemAt(wrapped).forceActiveFocus(Qt.TabFocusReason) // first, so that the window leaves it there
        model.selectedTab = wrapped
    }

    Row {
        anchors.centerIn: parent
        spacing: 2

        Repeater {
            id: tabs

            model: bar.model.tabs

            T.TabButton {
                id: tab

                required property int index
                required property var modelData
                readonly property bool selected: bar.model.selectedTab === tab.index
                readonly property color ink: selected ? Theme.accent : Theme.secondary

                width: 76
                height: 46
                focusPolicy: selected || activeFocus ? Qt.StrongFocus : Qt.ClickFocus
                text: tab.modelData.label
                checked: selected
                Accessible.name: text
                Accessible.selectable: true
                Accessible.selected: selected
                Accessible.onPressAction: clicked()
                onClicked: bar.model.selectedTab = tab.index

                Keys.onLeftPressed: bar.select(tab.index - 1)
                Keys.onRightPressed: bar.select(tab.index + 1)

                contentItem: Item {
                    Symbol {
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: 5
                        name: tab.modelData.symbol
                        color: tab.ink
                        size: 20
                    }
                    Label {
                        anchors.horizontalCenter: parent.horizontalCenter
                        y: 28
                        text: tab.text
                        font: Theme.weighted(Theme.caption2, tab.selected ? Font.DemiBold : Font.Normal)
                        color: tab.ink
                        Accessible.ignored: true
                    }
                }
                background: Rectangle {
                    radius: Theme.controlRadius
                    color: Theme.faded(Theme.primary, tab.selected ? 0.08 : tab.hovered ? 0.04 : 0)

                    FocusRing {
                        shown: tab.visualFocus
                        gap: -2
                    }
                }
            }
        }
    }
    Divider {
        anchors.bottom: parent.bottom
    }
}
