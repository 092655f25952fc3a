import QtQuick
import Norvane.Kit

// Text in one of the theme's styles. Never markup: names and paths come from outside.
Text {
    color: Theme.primary
    font: Theme.body
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.ignored: text === ""
}
