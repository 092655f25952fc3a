import QtQuick
import Norvane.Kit
import Norvane.Settings

Form {
    id: tab

    required property BlackoutSettings settings
    required property SettingsViewModel locale

    Label {
        width: parent.width
        text: Texts.text("Backups never start inside a blackout window — a due backup waits until the window ends. Windows whose end time is earlier than their start cross midnight (e.g. 22:00 – 06:00). Edits are saved and active the moment you make them; the bar below shows the effect on your next backup.")
        font: Theme.caption
        color: Theme.secondary
        wrapMode: Text.Wrap
    }
    RowRepeater {
        below: addWindow
        model: tab.settings.windows

        FormSection {
            id: blackout

            required property int index
            required property int days
            required property int start
            required property int end
            required property bool crossesMidnight
            readonly property Item remover: removeWindow

            FormRow {
                leading: DayPicker {
                    days: blackout.days
                    weekdays: tab.locale.weekdays
                    onPicked: days => tab.settings.setDays(blackout.index, days)
                }
            }
            FormRow {
                leading: [
                    Label {
                        anchors.verticalCenter: parent.verticalCenter
                        text: Texts.text("From")
                        Accessible.ignored: true
                    },
                    TimePicker {
                        label: Texts.text("From")
                        time: blackout.start
                        hours24: tab.locale.hours24
                        dayHalves: tab.locale.dayHalves
                        onPicked: time => tab.settings.setStart(blackout.index, time)
                    }
                ]

                Label {
                    anchors.verticalCenter: parent.verticalCenter
                    text: Texts.text("To")
                    Accessible.ignored: true
                }
                TimePicker {
                    label: Texts.text("To")
                    time: blackout.end
                    hours24: tab.locale.hours24
                    dayHalves: tab.locale.dayHalves
                    onPicked: time => tab.settings.setEnd(blackout.index, time)
                }
            }
            FormRow {
                visible: blackout.crossesMidnight
                leading: [
                    Symbol {
                        anchors.verticalCenter: parent.verticalCenter
                        name: "moon.stars.fill"
                        color: Theme.orange
                        size: 13
                    },
                    Label {
                        anchors.verticalCenter: parent.verticalCenter
                        text: Texts.text("Crosses midnight into the next day")
                        font: Theme.caption
                        color: Theme.orange
                    }
                ]
            }
            FormRow {
                leading: PlainButton {
                    id: removeWindow

                    anchors.verticalCenter: parent.verticalCenter
                    font: Theme.body
                    color: Theme.red
                    text: Texts.text("Remove")
                    onClicked: tab.settings.remove(blackout.index)
                }
            }
        }
    }
    FormSection {
        AddButton {
            id: addWindow

            text: Texts.text("Add Blackout Window")
            onClicked: {
                tab.settings.add()
                tab.showEnd()
            }
        }
    }
}
