import QtQuick
import Norvane.Kit

// A bar for each backup, and a red cross for each attempt that was none. The pointer, or the arrow keys, go
// from bar to bar and tell about it.
Item {
    id: view

    required property var chart
    readonly property int count: chart.bars.length
    readonly property real barWidth: Math.round(Math.max(4, Math.min(14, plot.width / count * 0.6)))
    property int chosen: count - 1 // by the keyboard
    property int hovered: -1
    readonly property int told: hovered >= 0 ? hovered : activeFocus ? chosen : -1

    implicitHeight: 96
    activeFocusOnTab: true
    Accessible.role: Accessible.Chart
    Accessible.name: Texts.text("RECENT BACKUPS — DURATION")

    onChartChanged: {
        hovered = -1
        chosen = count - 1
    }

    Keys.onLeftPressed: chosen = Math.max(0, chosen - 1)
    Keys.onRightPressed: chosen = Math.min(count - 1, chosen + 1)

    function middleOf(position) {
        return barWidth / 2 + position * (plot.width - barWidth)
    }

    Item {
        id: plot

        anchors.top: parent.top
        anchors.topMargin: 4
        anchors.left: parent.left
        anchors.leftMargin: 2
        anchors.right: parent.right
        anchors.rightMargin: 34
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 20

        Repeater {
            model: view.chart.minuteMarks

            Rectangle {
                id: line

                required property var modelData

                y: Math.round(plot.height * (1 - line.modelData.position))
                width: plot.width
                height: 1
                color: Theme.faded(Theme.primary, 0.1)

                Label {
                    anchors.left: parent.right
                    anchors.leftMargin: 6
                    anchors.verticalCenter: parent.verticalCenter
                    text: line.modelData.label
                    font: Theme.caption2
                    color: Theme.secondary
                    Accessible.ignored: true
                }
            }
        }
        Repeater {
            model: view.chart.dateMarks

            Rectangle {
                id: tick

                required property var modelData

                x: Math.round(view.middleOf(tick.modelData.position))
                width: 1
                height: plot.height + 4
                color: Theme.faded(Theme.primary, 0.06)

                Label {
                    x: Math.max(-tick.x, Math.min(plot.width + 34 - tick.x - width, -width / 2))
                    anchors.top: parent.bottom
                    anchors.topMargin: 1
                    text: tick.modelData.label
                    font: Theme.caption2
                    color: Theme.secondary
                    Accessible.ignored: true
                }
            }
        }
        Repeater {
            model: view.chart.bars

            Item {
                id: bar

                required property int index
                required property var modelData

                x: Math.round(view.middleOf(bar.modelData.position) - width / 2)
                width: view.barWidth
                height: plot.height
                Accessible.role: Accessible.Graphic
                Accessible.name: bar.modelData.text

                Rectangle {
                    anchors.bottom: parent.bottom
                    width: parent.width
                    // A backup of seconds would not show beside one of hours.
                    height: Math.max(bar.modelData.success ? 2 : 0, Math.round(parent.height * bar.modelData.height))
                    color: bar.modelData.success ? Theme.faded(Theme.green, 0.75) : Theme.red
                }
                Item {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: parent.height * (1 - view.chart.crossHeight)
                    visible: !bar.modelData.success

                    Repeater {
                        model: [45, -45]

                        Rectangle {
                            required property int modelData

                            x: -width / 2
                            y: -height / 2
                            width: 9
                            height: 2
                            radius: 1
                            rotation: modelData
                            color: Theme.red
                            antialiasing: true
                        }
                    }
                }
                Rectangle {
                    anchors.fill: parent
                    visible: view.told === bar.index
                    radius: 2
                    color: Theme.faded(Theme.primary, 0.1)
                }
                HoverHandler {
                    margin: 2
                    onHoveredChanged: {
                        if (hovered)
                            view.hovered = bar.index
                        else if (view.hovered === bar.index)
                            view.hovered = -1
                    }
                }
            }
        }
        Item {
            x: view.told < 0 ? 0 : view.middleOf(view.chart.bars[view.told].position) + tip.width / 2
            width: 0

            Tip {
                id: tip

                delay: 0
                y: -height - 2
                text: view.told < 0 ? "" : view.chart.bars[view.told].text
                shown: view.told >= 0
            }
        }
    }
    FocusRing {
        shown: view.activeFocus
        inside: 4
    }
}
