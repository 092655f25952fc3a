import QtQuick
import Norvane.Kit
import Norvane.Health

// The records in figures, as a chart and as a list.
Column {
    id: figures

    required property HealthViewModel model
    readonly property bool attempted: model.content.attempts.length > 0

    spacing: Theme.wideSpacing

    StatTilePair {
        width: parent.width
        first: figures.model.content.tiles[0]
        second: figures.model.content.tiles[1]
    }
    StatTilePair {
        width: parent.width
        first: figures.model.content.tiles[2]
        second: figures.model.content.tiles[3]
    }
    Card {
        width: parent.width
        color: Theme.figureSurface
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
        spacing: Theme.tightSpacing

        SectionCaption {
            text: Texts.text("LATEST ATTEMPTS")
        }
        AttemptList {
            width: parent.width
            attempts: figures.model.content.attempts
        }
    }

    Component {
        id: chart

        DurationChart {
            chart: figures.model.content.chart
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
