import QtQuick
import Norvane.Kit
import Norvane.Panel

// The panel: state, next backup, warnings and actions at a glance.
Rectangle {
    id: panel

    required property PanelViewModel model

    implicitWidth: 320
    implicitHeight: column.implicitHeight + 2 * column.y
    color: Theme.window
    Accessible.role: Accessible.Pane
    Accessible.name: "Norvane"

    Column {
        id: column

        x: 14
        y: 14
        width: panel.width - 2 * x
        spacing: 12

        Label {
            text: Texts.text("NORVANE")
            font: {
                let font = Theme.weighted(Theme.caption2, Font.DemiBold)
                font.letterSpacing = 1.4
                return font
            }
            color: Theme.tertiary
        }
        Loader {
            width: parent.width
            sourceComponent: panel.model.confirmingQuit ? quitConfirmation : status
        }
    }

    Component {
        id: quitConfirmation

        QuitConfirmation {
            model: panel.model
        }
    }
    Component {
        id: status

        Column {
            spacing: 12

            PanelHeader {
                width: parent.width
                model: panel.model
            }
            PanelProgress {
                width: parent.width
                visible: panel.model.content.running
                model: panel.model
                onStopped: panel.model.stop()
            }
            PanelNotices {
                width: parent.width
                model: panel.model
            }
            PanelFacts {
                width: parent.width
                model: panel.model
            }
            PanelActions {
                width: parent.width
                model: panel.model
            }
            PanelFooter {
                width: parent.width
                model: panel.model
            }
        }
    }
}
