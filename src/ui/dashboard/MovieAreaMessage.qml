import QtQuick
import Kestrum.Style

// A message in place of the movie: a large symbol, a title and a line under it, centred.
Column {
    id: message

    property string symbolName
    property string title
    property string text
    property color ink: Style.textSecondary

    spacing: Style.spacingM

    LucideIcon {
        anchors.horizontalCenter: parent.horizontalCenter
        width: 44
        height: 44
        symbolName: message.symbolName
        color: message.ink
    }

    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        text: message.title
        font: Style.title2
        color: Style.textPrimary
    }

    Text {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(implicitWidth, 420)
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        text: message.text
        font: Style.body
        color: Style.textSecondary
    }
}
