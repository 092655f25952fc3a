import QtQuick
import Norvane.Kit
import Norvane.SettingsPane

// Where backups go; what else there is to set stands behind "Options…".
FixedWindow {
    id: window

    required property PaneViewModel model
    readonly property bool covered: disks.visible || options.visible || folders.visible

    width: 520
    height: 460
    flags: Qt.Window
    title: Texts.text("Time Machine")
    scrolled: folders.visible ? folders.scrolled : disks.visible ? disks.scrolled : options.visible ? options.scrolled : overview.scrolled

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
        // Once it is enabled.
        onVisibleChanged: if (!visible) Qt.callLater(overview.focusOptions) // qmllint disable type
    }
    DiskSheet {
        id: disks

        anchors.fill: parent
        enabled: !folders.visible
        visible: window.model.choosingDisk
        model: window.model
        onVisibleChanged: if (!visible) Qt.callLater(overview.focusDisk) // qmllint disable type
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
                Qt.callLater(disks.takeFocus) // qmllint disable type
            else if (options.visible)
                Qt.callLater(options.takeFocus) // qmllint disable type
        }
    }
}
