import QtQuick
import Kestrum.Style
import Kestrum.Dashboard

// The short message over the movie after a key or a click: the symbol and the title on a rounded
// ground, fading in and out.
Rectangle {
    id: toast

    required property DashboardPlayback playback

    objectName: "playbackToast"
    implicitWidth: label.implicitWidth + Style.iconMedium + 3 * Style.spacingM
    implicitHeight: 36
    radius: height / 2
    color: Style.toastBackground
    border.color: Style.border
    border.width: Style.hairline
    opacity: toast.playback.hasToast ? 1 : 0
    visible: opacity > 0

    Behavior on opacity {
        NumberAnimation {
            duration: 180
            easing.type: Easing.OutCubic
        }
    }

    LucideIcon {
        id: symbol

        x: Style.spacingM
        anchors.verticalCenter: parent.verticalCenter
        width: Style.iconMedium
        height: Style.iconMedium
        symbolName: toast.playback.toastSymbol
        color: Style.textPrimary
    }

    Text {
        id: label

        x: symbol.x + symbol.width + Style.spacingM
        anchors.verticalCenter: parent.verticalCenter
        text: toast.playback.toastTitle
        font: Style.calloutSemibold
        color: Style.textPrimary
    }
}
