import QtQuick
import Kestrum.Style
import Kestrum.Review

// A timer of the header: the objective's art and its countdown, with its help text as the tip.
Item {
    id: timer

    property string artName
    property string text
    property string helpText
    property real artSize: 24
    property real artSpacing: 4

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight

    Row {
        id: row

        spacing: timer.artSpacing

        CommunityDragonIcon {
            anchors.verticalCenter: parent.verticalCenter
            width: timer.artSize
            height: timer.artSize
            artName: timer.artName
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: timer.text
            font: Style.calloutSemibold
            color: Style.textPrimary
        }
    }

    HoverHandler {
        id: hover
    }

    ReviewToolTip {
        shown: hover.hovered
        text: timer.helpText
    }
}
