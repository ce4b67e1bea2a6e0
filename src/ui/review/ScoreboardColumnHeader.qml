import QtQuick
import Kestrum.Style
import Kestrum.Review

// A column's title over the scoreboard's rows, with the title as its help.
Item {
    id: column

    property string title
    property color ink: Style.textTertiary
    property int alignment: Text.AlignLeft

    implicitWidth: label.implicitWidth
    implicitHeight: label.implicitHeight

    Text {
        id: label

        anchors.fill: parent
        horizontalAlignment: column.alignment
        verticalAlignment: Text.AlignVCenter
        text: column.title
        elide: Text.ElideRight
        font: Style.captionSemibold
        color: column.ink
    }

    HoverHandler {
        id: hover
    }

    ReviewToolTip {
        shown: hover.hovered && label.truncated
        text: column.title
    }
}
