import QtQuick
import Norvane.Kit
import Norvane.Health

// Whether backups really happen, by Time Machine's own records.
FixedWindow {
    id: window

    required property HealthViewModel model

    width: 560
    height: 520
    title: Texts.text("Backup Health")
    scrolled: form

    Form {
        id: form

        anchors.top: parent.top
        anchors.bottom: footer.top
        width: parent.width
        inset: 18
        verticalInset: 14
        spacing: Theme.wideSpacing

        WindowHeader {
            width: parent.width
            symbol: window.model.content.symbol
            tint: Theme.tints[window.model.content.tint]
            title: window.model.content.title
            subtitle: window.model.subtitle
        }
        Loader {
            width: parent.width
            sourceComponent: window.model.content.loading ? loading : figures
        }
    }
    HealthFooter {
        id: footer

        anchors.bottom: parent.bottom
        width: parent.width
        model: window.model
    }

    Component {
        id: loading

        Item {
            implicitHeight: 220

            LoadingNote {
                anchors.centerIn: parent
                text: Texts.text("Reading Time Machine records…")
            }
        }
    }
    Component {
        id: figures

        HealthFigures {
            model: window.model
        }
    }
}
