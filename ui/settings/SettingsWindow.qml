import QtQuick
import Norvane.Kit
import Norvane.Settings

// Six tabs, and below them what they mean for the next backup.
FixedWindow {
    id: window

    required property SettingsViewModel model

    width: 480
    height: 430
    flags: Qt.Window
    title: Texts.text("Settings") + " – Norvane"
    scrolled: chooser.visible ? chooser.scrolled : content.item?.scrolled ?? null
    onVisibleChanged: if (visible) tabs.focusSelected()

    Connections {
        target: window.model

        function onSelectedTabChanged() {
            tabs.focusSelected() // the control that had the keyboard is gone
        }
    }
    Shortcut {
        enabled: !chooser.visible
        sequence: "Ctrl+Tab"
        onActivated: tabs.select(window.model.selectedTab + 1)
    }
    Shortcut {
        enabled: !chooser.visible
        sequences: ["Ctrl+Shift+Tab", "Ctrl+Shift+Backtab"] // by the keyboard's layout
        onActivated: tabs.select(window.model.selectedTab - 1)
    }
    Item {
        anchors.fill: parent

        SettingsTabBar {
            id: tabs

            enabled: !chooser.visible
            width: parent.width
            model: window.model
        }
        Loader {
            id: content

            enabled: !chooser.visible
            anchors.top: tabs.bottom
            anchors.bottom: status.top
            width: parent.width
            sourceComponent: ({general, schedule, blackouts, conditions, activity, about})[window.model.selectedName]
        }
        SettingsStatusBar {
            id: status

            anchors.bottom: parent.bottom
            width: parent.width
            model: window.model
        }
    }

    Component {
        id: general

        GeneralTab {
            settings: window.model.general
            version: window.model.version
        }
    }
    Component {
        id: schedule

        ScheduleTab {
            settings: window.model.schedule
            locale: window.model
        }
    }
    Component {
        id: blackouts

        BlackoutsTab {
            settings: window.model.blackouts
            locale: window.model
        }
    }
    Component {
        id: conditions

        ConditionsTab {
            settings: window.model.conditions
        }
    }
    Component {
        id: activity

        ActivityTab {
            activity: window.model.activity
            onOpenLogFile: window.model.openLogFile()
        }
    }
    Component {
        id: about

        AboutTab {
            model: window.model
        }
    }

    AppChooser {
        id: chooser

        anchors.fill: parent
        visible: window.model.conditions.chooser.open
        chooser: window.model.conditions.chooser
    }
}
