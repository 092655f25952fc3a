import QtQuick

// One step of the setup guide, in the middle of its room.
Item {
    default property alias items: column.data
    property alias spacing: column.spacing

    Column {
        id: column

        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
        spacing: 14
    }
}
