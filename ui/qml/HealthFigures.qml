import QtQuick
import Norvane

// The records in figures, as a chart and as a list.
Column {
    id: figures

    required property var content

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

        SectionCaption {
            text: Texts.text("RECENT BACKUPS — DURATION")
        }
        Loader {
            width: parent.width
            sourceComponent: figures.content.attempts.length > 0 ? chart : nothing
        }
    }
    SectionCaption {
        topPadding: 6
        text: Texts.text("LATEST ATTEMPTS")
    }
    AttemptList {
        width: parent.width
        attempts: figures.content.attempts
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
