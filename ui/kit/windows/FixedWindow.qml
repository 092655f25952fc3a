import QtQuick
import Norvane.Kit

// A window of one size, that can be closed and nothing else. Escape and Ctrl+W close it, and the keys for scrolling scroll
// its page, wherever in it the keyboard is.
Window {
    id: window

    default property alias items: room.data
    property Flickable scrolled: null // its page
    // What takes over the keyboard from a control that showed it, shows it too.
    property bool keyboardShown: false
    // No control has it that can be seen; hidden ones keep it.
    readonly property bool keyboardFree: !(activeFocusItem?.activeFocusOnTab && activeFocusItem.visible)
    readonly property int takeoverReason: keyboardShown ? Qt.TabFocusReason : Qt.OtherFocusReason

    minimumWidth: width
    maximumWidth: width
    minimumHeight: height
    maximumHeight: height
    color: Theme.window
    flags: Qt.Window | Qt.CustomizeWindowHint | Qt.WindowTitleHint | Qt.WindowSystemMenuHint | Qt.WindowCloseButtonHint
    onActiveFocusItemChanged: {
        const reason = activeFocusItem?.focusReason
        if (reason !== undefined)
            keyboardShown = [Qt.TabFocusReason, Qt.BacktabFocusReason, Qt.ShortcutFocusReason].includes(reason)
    }

    // False: the key does not scroll.
    function scroll(key) {
        const page = scrolled
        if (!page)
            return false
        const line = 40
        const step = {[Qt.Key_Up]: -line, [Qt.Key_Down]: line, [Qt.Key_PageUp]: line - page.height, [Qt.Key_PageDown]: page.height - line, [Qt.Key_Home]: -Infinity, [Qt.Key_End]: Infinity}[key]
        if (step === undefined)
            return false
        const top = page.originY - page.topMargin
        const lowest = Math.max(top, page.originY + page.contentHeight + page.bottomMargin - page.height)
        page.contentY = Math.max(top, Math.min(lowest, page.contentY + step))
        return true
    }

    Shortcut {
        sequence: "Ctrl+W"
        onActivated: window.close()
    }
    FocusScope { // keeps the keyboard when the control that had it is gone
        id: room

        anchors.fill: parent
        focus: true

        Keys.onEscapePressed: window.close()
        Keys.onPressed: event => event.accepted = (event.modifiers & ~Qt.KeypadModifier) === 0 && window.scroll(event.key)
    }
}
