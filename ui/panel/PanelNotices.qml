import QtQuick
import Norvane.Kit

// What deserves attention, most urgent first.
Column {
    id: notices

    required property var model
    readonly property var content: model.content

    spacing: 12

    NoticeRow {
        visible: notices.content.stalled
        symbol: "exclamationmark.triangle.fill"
        text: Texts.text("Backup appears stalled — no progress in a while")
    }
    NoticeRow {
        visible: notices.content.willBackUpBy !== ""
        symbol: "hourglass"
        text: notices.content.willBackUpBy

        PlainButton {
            text: Texts.text("Dismiss")
            underlined: true
            color: Theme.orange
            onClicked: notices.model.dismissDeferral()
        }
    }
    NoticeRow {
        visible: notices.content.deferredFrom !== ""
        symbol: "exclamationmark.triangle.fill"
        text: notices.content.deferredFrom
    }
    NoticeRow {
        visible: notices.content.skipArmed
        symbol: "forward.end.fill"
        text: Texts.text("Next occurrence will be skipped")
    }
    NoticeRow {
        visible: notices.content.catchUpPending
        symbol: "exclamationmark.arrow.circlepath"
        text: Texts.text("Catching up a backup that was missed")
    }
    NoticeRow {
        visible: notices.content.runsBy !== ""
        symbol: "arrow.right.to.line"
        text: notices.content.runsBy

        PushButton {
            small: true
            text: Texts.text("Dismiss")
            onClicked: notices.model.dismissDeferral()
        }
    }
    NoticeRow {
        visible: notices.content.crashed
        symbol: "ladybug.fill"
        text: Texts.text("Norvane crashed last time")

        PushButton {
            small: true
            text: Texts.text("Email Report…")
            onClicked: notices.model.emailReport()
        }
        PushButton {
            small: true
            text: Texts.text("Ignore")
            onClicked: notices.model.ignoreReport()
        }
    }
    NoticeButton {
        visible: notices.content.autoBackupOn
        symbol: "exclamationmark.triangle.fill"
        text: Texts.text("Apple's automatic backups are also on — click to set Time Machine to Manually")
        onClicked: notices.model.openTimeMachineSettings()
    }
}
