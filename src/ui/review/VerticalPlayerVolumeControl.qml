import QtQuick
import Kestrum.Style
import Kestrum.Review

// The volume as a pop-up: a standing slider over the mute button, with its label and level. It shows the
// same "playbackVolume" and "playbackMuted" as the strip's slider, and briefly when the keyboard changes
// the volume.
Column {
    id: control

    required property PlaybackVolumeModel volume
    property real sliderHeight: 120

    spacing: Style.spacingS
    width: Math.max(label.implicitWidth, 56)

    Text {
        id: label

        anchors.horizontalCenter: parent.horizontalCenter
        text: control.volume.label
        font: Style.captionSemibold
        color: Style.textSecondary
    }

    VolumeSlider {
        objectName: "verticalVolumeSlider"
        anchors.horizontalCenter: parent.horizontalCenter
        orientation: Qt.Vertical
        length: control.sliderHeight
        value: control.volume.volume
        onMoved: control.volume.volume = value
    }

    TimelineControlButton {
        anchors.horizontalCenter: parent.horizontalCenter
        symbolName: control.volume.symbolName
        toolTip: control.volume.muteToolTip
        onClicked: control.volume.toggleMute()
    }
}
