import QtQuick
import Kestrum.Style

// A line of explanation or warning under a control: a symbol when given, then text that wraps.
Row {
    id: note

    property string text
    property string symbolName
    property color ink: Style.textSecondary

    spacing: Style.spacingXS
    visible: note.text.length > 0

    LucideIcon {
        width: Style.iconSmall + 2
        height: Style.iconSmall + 2
        visible: note.symbolName.length > 0
        symbolName: note.symbolName
        color: note.ink
    }

    Text {
        width: note.width - (note.symbolName.length > 0 ? Style.iconSmall + 2 + note.spacing : 0)
        text: note.text
        font: Style.footnote
        color: note.ink
        wrapMode: Text.Wrap
    }
}
