import QtQuick
import Kestrum.Style
import Kestrum.Review

// The volume in the strip: the mute button (its symbol follows the level) and a lying slider of
// `sliderWidth`. It shares "playbackVolume" and "playbackMuted" with the pop-up, through the one model.
Row {
    id: control

    required property PlaybackVolumeModel volume
    property real sliderWidth: 88
    property bool highlighted
    readonly property Item muteButton: mute

    spacing: Style.spacingXS

    TimelineControlButton {
        id: mute

        objectName: "muteButton"
        anchors.verticalCenter: parent.verticalCenter
        symbolName: control.volume.symbolName
        toolTip: control.volume.muteToolTip
        highlighted: control.highlighted
        onClicked: control.volume.toggleMute()
    }

    VolumeSlider {
        objectName: "horizontalVolumeSlider"
        anchors.verticalCenter: parent.verticalCenter
        orientation: Qt.Horizontal
        length: control.sliderWidth
        value: control.volume.volume
        onMoved: control.volume.volume = value

        ReviewToolTip {
            shown: parent.hovered
            text: control.volume.label
        }
    }
}
