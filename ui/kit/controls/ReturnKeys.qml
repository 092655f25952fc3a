import QtQuick

// For Keys.forwardTo: Return and Enter mean the same, and a key that is held means it once.
Item {
    id: keys

    signal pressed

    Keys.onReturnPressed: event => { if (!event.isAutoRepeat) keys.pressed() }
    Keys.onEnterPressed: event => { if (!event.isAutoRepeat) keys.pressed() }
}
