import QtQuick
import Kestrum.Style
import Kestrum.Review

// A control of the strip: a symbol, or a short text (the speed), on a round ground that lights up under
// the pointer and while `highlighted` (its pop-up is open, or a keyboard change is on show), with its tip.
Item {
    id: button

    property string symbolName
    property string text
    property string toolTip
    property bool highlighted
    property bool prominent
    signal clicked

    implicitWidth: Math.max(button.implicitHeight, label.implicitWidth + 2 * Style.spacingM)
    implicitHeight: 30

    Rectangle {
        anchors.fill: parent
        radius: height / 2
        color: button.prominent ? Style.accent
             : button.highlighted ? Style.surfaceHovered
             : hover.hovered ? Style.surfaceHovered : "transparent"
        border.color: button.highlighted ? Style.accent : (hover.hovered ? Style.border : "transparent")
        border.width: Style.hairline

        Behavior on color {
            ColorAnimation {
                duration: Style.hoverDurationMs
            }
        }
    }

    LucideIcon {
        anchors.centerIn: parent
        width: Style.iconMedium
        height: Style.iconMedium
        visible: button.symbolName.length > 0
        symbolName: button.symbolName
        color: button.prominent ? Style.textOnAccent : (button.highlighted ? Style.accent : Style.textPrimary)
    }

    Text {
        id: label

        anchors.centerIn: parent
        visible: button.text.length > 0
        text: button.text
        font: Style.calloutSemibold
        color: button.highlighted ? Style.accent : Style.textPrimary
    }

    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
    }

    TapHandler {
        onTapped: button.clicked()
    }

    ReviewToolTip {
        shown: hover.hovered
        text: button.toolTip
    }
}
