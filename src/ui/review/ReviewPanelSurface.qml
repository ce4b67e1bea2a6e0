import QtQuick
import Kestrum.Style

// The ground of a pop-up of the strip: the card style, with its shadow, over the movie. Children are the
// panel's content, inset by `padding`.
KestrumCardModifier {
    hoverEnabled: false
    padding: Style.spacingM
}
