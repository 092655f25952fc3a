import QtQuick
import Norvane.Kit
import Norvane.Settings

Item {
    id: tab

    required property SettingsViewModel model

    Column {
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - 60
        spacing: Theme.spacing

        Symbol {
            anchors.horizontalCenter: parent.horizontalCenter
            name: "clock.badge.checkmark"
            color: Theme.brand
            size: 72
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Norvane"
            font: Theme.weighted(Theme.title, Font.DemiBold)
            Accessible.role: Accessible.Heading
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: tab.model.versionText
            font: Theme.callout
            color: Theme.secondary
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            bottomPadding: 4
            text: Texts.text("Take control of when Time Machine backs up.")
        }
        PushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: Texts.text("Show Setup Guide")
            onClicked: tab.model.showSetupGuide()
        }
        Label {
            width: parent.width
            topPadding: 6
            horizontalAlignment: Text.AlignHCenter
            text: Texts.text("Norvane is free. If it's been useful, a coffee keeps it going.")
            font: Theme.callout
            color: Theme.secondary
            wrapMode: Text.Wrap
        }
        PushButton {
            anchors.horizontalCenter: parent.horizontalCenter
            text: Texts.text("Buy Me a Coffee ☕")
            onClicked: tab.model.openWebsite("/coffee?src=about")
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: 4
            spacing: 18

            Link {
                text: tab.model.websiteHost
                onClicked: tab.model.openWebsite("")
            }
            Link {
                text: Texts.text("Privacy")
                onClicked: tab.model.openWebsite("/legal/privacy")
            }
            Link {
                text: Texts.text("License")
                onClicked: tab.model.openWebsite("/legal/eula")
            }
        }
        Label {
            anchors.horizontalCenter: parent.horizontalCenter
            text: Texts.text("© 2026 The Norvane project")
            font: Theme.caption
            color: Theme.tertiary
        }
    }
}
