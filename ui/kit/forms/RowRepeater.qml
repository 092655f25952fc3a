import QtQuick
import Norvane.Kit

// Rows that can be removed, each by its `remover`. From a row that goes, the keyboard goes on to the next one's, or to the
// button below the rows.
Repeater {
    id: rows

    required property Item below

    onItemRemoved: (index, item) => {
        if (holdsKeyboard(item))
            removerFrom(index).forceActiveFocus((Window.window as FixedWindow).takeoverReason)
    }

    function holdsKeyboard(row) {
        for (let item = Window.activeFocusItem; item; item = item.parent) {
            if (item === row)
                return true
        }
        return false
    }

    function removerFrom(index) {
        for (let i = index; i < count; ++i) {
            if (itemAt(i)?.remover.visible)
                return itemAt(i).remover
        }
        return below
    }
}
