import QtQuick
import Norvane.Kit

// Where backups go; what else there is to set stands behind "Options…".
FixedWindow {
    id: window

    required property var model
    readonly property bool covered: disks.visible || options.visible || folders.visible

    width: 520
    height: 460
    flags: Qt.Window
    title: Texts.text("Time Machine")
    scrolled: [folders, disks, options].find(sheet => sheet.visible)?.scrolled ?? overview.scrolled

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
        onVisibleChanged: if (!visible) Qt.callLater(overview.focusOptions) // once it is enabled
    }
    DiskSheet {
        id: disks

        anchors.fill: parent
        enabled: !folders.visible
        visible: window.model.choosingDisk
        model: window.model
        onVisibleChanged: if (!visible) Qt.callLater(overview.focusDisk)
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
                Qt.callLater(disks.takeFocus)
            else if (options.visible)
                Qt.callLater(options.takeFocus)
        }
    }
}
