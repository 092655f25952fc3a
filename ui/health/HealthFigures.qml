import QtQuick
import Norvane.Kit

// The records in figures, as a chart and as a list.
Column {
    id: figures

    required property var content
    readonly property bool attempted: content.attempts.length > 0

    spacing: 10

    StatTilePair {
        width: parent.width
        first: figures.content.tiles[0]
        second: figures.content.tiles[1]
    }
    StatTilePair {
        width: parent.width
        first: figures.content.tiles[2]
        second: figures.content.tiles[3]
    }
    Card {
        width: parent.width
        color: Theme.faded(Theme.primary, 0.04)
        border.width: 0

        Item {
            width: parent.width
            implicitHeight: caption.implicitHeight

            SectionCaption {
                id: caption

                text: Texts.text("RECENT BACKUPS — DURATION")
            }
            Label {
                anchors.right: parent.right
                visible: figures.attempted
                text: Texts.text("Minutes")
                font: Theme.caption2
                color: Theme.secondary
            }
        }
        Loader {
            width: parent.width
            sourceComponent: figures.attempted ? chart : nothing
        }
    }
    Column {
        width: parent.width
        visible: figures.attempted
        spacing: 4

        SectionCaption {
            text: Texts.text("LATEST ATTEMPTS")
        }
        AttemptList {
            width: parent.width
            attempts: figures.content.attempts
        }
    }

    Component {
        id: chart

        DurationChart {
            chart: figures.content.chart
        }
    }
    Component {
        id: nothing

        Label {
            text: Texts.text("No attempts recorded yet")
            font: Theme.caption
            color: Theme.secondary
        }
    }
}
