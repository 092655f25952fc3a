import QtQuick
import Norvane.Kit

// A question that covers its window; there is one while it has a title. The focus goes back to where it came from.
Sheet {
    id: sheet

    required property string message
    required property string answer
    property bool covering: false // what lies below is to be disabled
    property Item opener

    signal confirmed
    signal cancelled

    frameWidth: 320
    frameHeight: question.implicitHeight + 2 * question.y
    visible: title !== ""
    onVisibleChanged: visible ? takeFocus() : giveFocusBack()
    onEscaped: cancelled()

    function takeFocus() {
        opener = Window.activeFocusItem
        covering = true
        question.takeFocus((Window.window as FixedWindow).takeoverReason)
    }

    function giveFocusBack() {
        covering = false
        if (opener?.enabled)
            opener.forceActiveFocus((Window.window as FixedWindow).takeoverReason)
        opener = null
    }

    Question {
        id: question

        x: 18
        y: 18
        width: parent.width - 2 * x
        symbol: "trash"
        title: sheet.title
        message: sheet.message
        answer: sheet.answer
        onConfirmed: sheet.confirmed()
        onCancelled: sheet.cancelled()
    }
}
