import QtQuick
import Kestrum.Style
import Kestrum.Review

// One choice of a pop-up: its label, a check mark when chosen, lit under the pointer; a click chooses.
Item {
    id: row

    property string text
    property bool checked
    property bool emphasised
    signal clicked

    implicitWidth: label.implicitWidth + check.width + 3 * Style.spacingM
    implicitHeight: 26

    Rectangle {
        anchors.fill: parent
        radius: Style.radiusSmall
        color: hover.hovered ? Style.surfaceHovered : "transparent"
    }

    LucideIcon {
        id: check

        anchors.left: parent.left
        anchors.leftMargin: Style.spacingS
        anchors.verticalCenter: parent.verticalCenter
        width: Style.iconSmall
        height: Style.iconSmall
        symbolName: "checkmark"
        color: Style.accent
        visible: row.checked
    }

    Text {
        id: label

        anchors.left: check.right
        anchors.leftMargin: Style.spacingS
        anchors.verticalCenter: parent.verticalCenter
        text: row.text
        font: row.emphasised ? Style.calloutSemibold : Style.callout
        color: Style.textPrimary
    }

    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
    }

    TapHandler {
        onTapped: row.clicked()
    }
}
