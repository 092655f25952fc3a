import QtQuick
import Norvane.Kit
import Norvane.Panel

Question {
    id: confirmation

    required property PanelViewModel model

    symbol: "power"
    title: Texts.text("Quit Norvane?")
    message: model.quitMessage
    answer: Texts.text("Quit")
    titleFont: Theme.question
    circleSize: 38
    circleOpacity: 0.14
    messagePadding: 0
    Component.onCompleted: takeFocus(Qt.TabFocusReason)
    onConfirmed: model.quit()
    onCancelled: model.cancelQuit()
}
