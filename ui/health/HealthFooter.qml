import QtQuick
import Norvane.Kit
import Norvane.Health

// Where the figures come from, and what leads on from them.
Item {
    id: footer

    required property HealthViewModel model

    implicitHeight: column.implicitHeight + 2 * column.y

    Divider {}
    Column {
        id: column

        x: 18
        y: 12
        width: parent.width - 2 * x
        spacing: Theme.spacing

        PlainButton {
            id: coffee

            visible: text !== ""
            text: footer.model.content.coffee
            color: Theme.secondary
            Accessible.description: tip.text
            onClicked: footer.model.buyCoffee()

            HoverHandler {
                cursorShape: Qt.PointingHandCursor
            }
            Tip {
                id: tip

                x: 0
                text: Texts.text("Buy Me a Coffee ☕")
                shown: coffee.hovered
            }
        }
        Item {
            width: parent.width
            implicitHeight: Math.max(source.implicitHeight, buttons.implicitHeight)

            Label {
                id: source

                anchors.left: parent.left
                anchors.right: buttons.left
                anchors.rightMargin: 12
                anchors.verticalCenter: parent.verticalCenter
                text: Texts.text("Data from Time Machine's own records — no special permissions needed.")
                font: Theme.caption2
                color: Theme.tertiary
                wrapMode: Text.Wrap
            }
            Row {
                id: buttons

                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                spacing: Theme.spacing

                PushButton {
                    text: Texts.text("Activity…")
                    onClicked: footer.model.openActivity()
                }
                PushButton {
                    text: Texts.text("Local Snapshots…")
                    onClicked: footer.model.openLocalSnapshots()
                }
                PushButton {
                    text: Texts.text("Refresh")
                    onClicked: footer.model.refresh()
                }
            }
        }
    }
}
