import QtQuick
import Norvane.Kit

// Whether backups really happen, by Time Machine's own records.
FixedWindow {
    id: window

    required property var model
    readonly property var content: model.content

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
        spacing: 10

        WindowHeader {
            width: parent.width
            symbol: window.content.symbol
            tint: [Theme.green, Theme.orange, Theme.red][window.content.tint]
            title: window.content.title
            subtitle: window.model.subtitle
        }
        Loader {
            width: parent.width
            sourceComponent: window.content.loading ? loading : figures
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
            content: window.content
        }
    }
}
