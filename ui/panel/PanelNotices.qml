import QtQuick
import Norvane.Kit
import Norvane.Panel

// What deserves attention, most urgent first.
Column {
    id: notices

    required property PanelViewModel model

    spacing: 12

    NoticeRow {
        visible: notices.model.content.stalled
        symbol: "exclamationmark.triangle.fill"
        text: Texts.text("Backup appears stalled — no progress in a while")
    }
    NoticeRow {
        visible: notices.model.content.willBackUpBy !== ""
        symbol: "hourglass"
        text: notices.model.content.willBackUpBy

        PlainButton {
            text: Texts.text("Dismiss")
            underlined: true
            color: Theme.orange
            onClicked: notices.model.dismissDeferral()
        }
    }
    NoticeRow {
        visible: notices.model.content.deferredFrom !== ""
        symbol: "exclamationmark.triangle.fill"
        text: notices.model.content.deferredFrom
    }
    NoticeRow {
        visible: notices.model.content.skipArmed
        symbol: "forward.end.fill"
        text: Texts.text("Next occurrence will be skipped")
    }
    NoticeRow {
        visible: notices.model.content.catchUpPending
        symbol: "exclamationmark.arrow.circlepath"
        text: Texts.text("Catching up a backup that was missed")
    }
    NoticeRow {
        visible: notices.model.content.runsBy !== ""
        symbol: "arrow.right.to.line"
        text: notices.model.content.runsBy

        PushButton {
            small: true
            text: Texts.text("Dismiss")
            onClicked: notices.model.dismissDeferral()
        }
    }
    NoticeRow {
        visible: notices.model.content.crashed
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
        visible: notices.model.content.autoBackupOn
        symbol: "exclamationmark.triangle.fill"
        text: Texts.text("Apple's automatic backups are also on — click to set Time Machine to Manually")
        onClicked: notices.model.openTimeMachineSettings()
    }
}
