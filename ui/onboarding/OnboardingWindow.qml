import QtQuick
import Norvane.Kit
import Norvane.Onboarding

// Four steps, and below them the way on. Without a title of its own the desktop shows the program's name.
FixedWindow {
    id: window

    required property OnboardingViewModel model

    width: 500
    height: 540
    onVisibleChanged: if (visible) forward.forceActiveFocus(Qt.OtherFocusReason)

    Shortcut { // wherever the keyboard is, but on a button of its own
        enabled: window.keyboardFree || !(window.activeFocusItem instanceof BaseButton)
        sequences: ["Return", "Enter"]
        autoRepeat: false
        onActivated: window.model.forward()
    }
    Connections {
        target: window.model

        function onStepChanged() {
            forward.forceActiveFocus(Qt.OtherFocusReason)
        }
        function onFinished() {
            window.close()
        }
    }
    Loader {
        x: 40
        y: 14
        width: parent.width - 2 * x
        height: bar.y - y - 8
        sourceComponent: {
            switch (window.model.step) {
            case OnboardingViewModel.Welcome:
                return welcome
            case OnboardingViewModel.Automatic:
                return automatic
            case OnboardingViewModel.Cover:
                return cover
            default:
                return summary
            }
        }
    }
    Item {
        id: bar

        anchors.bottom: parent.bottom
        width: parent.width
        height: 60

        PushButton {
            x: 20
            anchors.verticalCenter: parent.verticalCenter
            visible: window.model.hasPrevious
            text: Texts.text("Back")
            onClicked: window.model.back()
        }
        Row {
            anchors.centerIn: parent
            spacing: 5
            Accessible.role: Accessible.StaticText
            Accessible.name: window.model.position

            Repeater {
                model: window.model.steps

                Rectangle {
                    id: dot

                    required property int index

                    width: 6
                    height: 6
                    radius: 3
                    color: dot.index === window.model.step ? Theme.accent : Theme.faded(Theme.primary, 0.15)
                }
            }
        }
        PushButton {
            id: forward

            anchors.right: parent.right
            anchors.rightMargin: 20
            anchors.verticalCenter: parent.verticalCenter
            prominent: true
            text: window.model.forwardLabel
            onClicked: window.model.forward()
        }
    }

    Component {
        id: welcome

        OnboardingWelcome {}
    }
    Component {
        id: automatic

        OnboardingAutomatic {
            model: window.model
        }
    }
    Component {
        id: cover

        OnboardingCover {
            model: window.model
        }
    }
    Component {
        id: summary

        OnboardingSummary {
            model: window.model
        }
    }
}
