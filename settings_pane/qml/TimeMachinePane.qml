import QtQuick
import Norvane

// Where backups go; what else there is to set stands behind "Options…".
FixedWindow {
    id: window

    required property var model
    readonly property bool covered: disks.visible || options.visible || folders.visible

    width: 520
    height: 460
    flags: Qt.Window
    title: Texts.text("Time Machine")

    PaneOverview {
        id: overview

        anchors.fill: parent
        enabled: !window.covered
        model: window.model
    }
    OptionsSheet {
        id: options

        anchors.fill: parent
        enabled: !folders.visible
        visible: window.model.showsOptions
        model: window.model
        onVisibleChanged: if (!visible) overview.focusOptions()
    }
    DiskSheet {
        id: disks

        anchors.fill: parent
        enabled: !folders.visible
        visible: window.model.choosingDisk
        model: window.model
        onVisibleChanged: if (!visible) overview.focusDisk()
    }
    FolderSheet {
        id: folders

        anchors.fill: parent
        visible: window.model.folderChooser.open
        chooser: window.model.folderChooser
        onVisibleChanged: {
            if (visible)
                return
            if (disks.visible)
                disks.takeFocus()
            else if (options.visible)
                options.takeFocus()
        }
    }
}
