import QtQuick
import Norvane.Kit
import Norvane.Settings

Form {
    id: tab

    required property ScheduleSettings settings
    required property SettingsViewModel locale

    FormSection {
        FormRow {
            label: Texts.text("Rule")

            SegmentedPicker {
                width: 330
                title: Texts.text("Rule")
                labels: tab.settings.modes
                selected: tab.settings.mode
                onPicked: index => tab.settings.mode = index
            }
        }
    }
    FormSection {
        visible: tab.settings.mode === ScheduleSettings.Interval
        header: Texts.text("Back up every")
        footer: Texts.text("Counted from the end of the previous backup. Apple's automatic mode is roughly every hour; 4–8 hours suits most workflows.")

        SlideRow {
            name: Texts.text("Back up every")
            from: 1
            to: 24
            value: tab.settings.hours
            told: tab.settings.hoursText
            onMoved: value => tab.settings.hours = value
        }
    }
    FormSection {
        visible: tab.settings.mode === ScheduleSettings.Daily
        header: Texts.text("Back up daily at")

        RowRepeater {
            below: addDaily
            model: tab.settings.times

            FormRow {
                id: daily

                required property int index
                required property int time
                readonly property Item remover: removeDaily

                leading: TimePicker {
                    label: Texts.text("Back up daily at")
                    time: daily.time
                    hours24: tab.locale.hours24
                    dayHalves: tab.locale.dayHalves
                    onPicked: time => tab.settings.setTime(daily.index, time)
                }
                IconButton {
                    id: removeDaily

                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "minus.circle.fill"
                    label: Texts.text("Remove")
                    onClicked: tab.settings.removeTime(daily.index)
                }
            }
        }
        AddButton {
            id: addDaily

            text: Texts.text("Add Time")
            onClicked: tab.settings.addTime()
        }
    }
    FormSection {
        visible: tab.settings.mode === ScheduleSettings.Weekly
        header: Texts.text("Back up at")
        footer: Texts.text("Each time runs on the selected days. A row with no days selected is ignored.")

        RowRepeater {
            below: addWeekly
            model: tab.settings.weeklyRows

            FormRow {
                id: weekly

                required property int index
                required property int days
                required property int time
                readonly property Item remover: removeWeekly

                leading: DayPicker {
                    days: weekly.days
                    weekdays: tab.locale.weekdays
                    onPicked: days => tab.settings.setRowDays(weekly.index, days)
                }
                TimePicker {
                    anchors.verticalCenter: parent.verticalCenter
                    label: Texts.text("Back up at")
                    time: weekly.time
                    hours24: tab.locale.hours24
                    dayHalves: tab.locale.dayHalves
                    onPicked: time => tab.settings.setRowTime(weekly.index, time)
                }
                IconButton {
                    id: removeWeekly

                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "minus.circle.fill"
                    label: Texts.text("Remove")
                    onClicked: tab.settings.removeRow(weekly.index)
                }
            }
        }
        AddButton {
            id: addWeekly

            text: Texts.text("Add Time")
            onClicked: tab.settings.addRow()
        }
    }
}
