import QtQuick
import Norvane.Kit

// Small and spaced, above a part of a window.
Label {
    color: Theme.secondary
    font: {
        let font = Theme.weighted(Theme.caption2, Font.DemiBold)
        font.letterSpacing = 0.8
        return font
    }
    Accessible.role: Accessible.Heading
}
