import QtQuick
import Kestrum.Style

// A command of the panel or the settings: a text, with a symbol when given, on a rounded ground that lights
// under the pointer. Disabled, it is dimmed and answers nothing.
Item {
    id: button

    property string text
    property string symbolName
    property bool prominent
    signal clicked

    implicitWidth: content.implicitWidth + 2 * Style.spacingL
    implicitHeight: 28
    opacity: button.enabled ? 1 : 0.45
    activeFocusOnTab: true

    Rectangle {
        anchors.fill: parent
        radius: Style.radiusMedium
        color: button.prominent ? Style.accent
             : (hover.hovered && button.enabled ? Style.surfaceHovered : Style.surface)
        border.color: button.activeFocus ? Style.accent : Style.border
        border.width: Style.hairline
    }

    Row {
        id: content

        anchors.centerIn: parent
        spacing: Style.spacingXS

        LucideIcon {
            anchors.verticalCenter: parent.verticalCenter
            width: Style.iconMedium
            height: Style.iconMedium
            visible: button.symbolName.length > 0
            symbolName: button.symbolName
            color: button.prominent ? Style.textOnAccent : Style.textPrimary
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: button.text
            font: Style.callout
            color: button.prominent ? Style.textOnAccent : Style.textPrimary
        }
    }

    HoverHandler {
        id: hover

        enabled: button.enabled
        cursorShape: Qt.PointingHandCursor
    }

    TapHandler {
        enabled: button.enabled
        onTapped: button.clicked()
    }

    Keys.onSpacePressed: button.clicked()
    Keys.onReturnPressed: button.clicked()
}
