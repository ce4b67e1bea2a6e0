import QtQuick
import Kestrum.Style
import Kestrum.Review

// The control strip under the movie: the play button, the track with a marker per event and the times
// under it, the filter and speed pop-ups and the volume. Everything it shows and does comes from the
// model; the pop-ups open above their buttons, over the movie, and the hover card above the strip.
Item {
    id: root

    required property GameTimelineModel model
    property real sliderWidth: 88

    implicitHeight: root.model.timelineControlHeight

    Rectangle {
        anchors.fill: parent
        color: Style.surface

        Rectangle {
            width: parent.width
            height: Style.hairline
            color: Style.separator
        }
    }

    TimelineControlButton {
        id: playButton

        objectName: "playButton"
        x: Style.spacingXL
        y: root.model.laneCenter - height / 2
        implicitHeight: 38
        prominent: true
        symbolName: root.model.playButtonSymbolName
        toolTip: root.model.playButtonToolTip
        onClicked: root.model.togglePlayback()
    }

    GameTimelineTrack {
        id: track

        objectName: "timelineTrack"
        x: playButton.x + playButton.width + Style.spacingXL
        width: controls.x - Style.spacingXL - track.x
        height: root.height
        model: root.model
    }

    Text {
        objectName: "currentTimeText"
        x: track.x + Style.spacingS
        y: root.model.timestampGutterCenter - height / 2
        text: root.model.currentTimeText
        font: Style.captionSemibold
        color: Style.textPrimary
    }

    Text {
        x: track.x + track.width - width - Style.spacingS
        y: root.model.timestampGutterCenter - height / 2
        text: root.model.durationText
        font: Style.caption
        color: Style.textSecondary
    }

    Row {
        id: controls

        x: root.width - width - Style.spacingXL
        y: root.model.laneCenter - height / 2
        spacing: Style.spacingS

        TimelineControlButton {
            id: filterButton

            objectName: "filterButton"
            anchors.verticalCenter: parent.verticalCenter
            symbolName: "line.3.horizontal.decrease.circle"
            toolTip: root.model.filterTitle
            highlighted: root.model.isTimelineFilterPresented
            onClicked: root.model.isTimelineFilterPresented = !root.model.isTimelineFilterPresented
        }

        TimelineControlButton {
            id: speedButton

            objectName: "speedButton"
            anchors.verticalCenter: parent.verticalCenter
            implicitWidth: 52
            text: root.model.isPlaybackRateAnimating ? root.model.animatedPlaybackRateText : root.model.playbackRateText
            toolTip: root.model.playbackRateToolTip
            highlighted: root.model.isPlaybackRatePresented || root.model.isPlaybackRateAnimating
            onClicked: root.model.isPlaybackRatePresented = !root.model.isPlaybackRatePresented
        }

        PlayerVolumeControl {
            id: volumeControl

            anchors.verticalCenter: parent.verticalCenter
            volume: root.model.volume
            sliderWidth: root.sliderWidth
            highlighted: root.model.showsVolumePopUp
        }
    }

    RecordingEventHoverCard {
        id: hoverCard

        objectName: "hoverCard"
        hoverCard: root.model.hoverCard
        visible: root.model.hoverCard.isVisible
        width: implicitWidth
        height: implicitHeight
        x: Math.max(Style.spacingS, Math.min(track.x + root.model.hoverCard.x - width / 2,
                                             root.width - width - Style.spacingS))
        y: root.model.hoverCard.y - height / 2
        z: 10
    }

    UpwardPanelPresenter {
        objectName: "filterPanel"
        anchorItem: filterButton
        presented: root.model.isTimelineFilterPresented
        implicitWidth: filterSurface.implicitWidth
        implicitHeight: filterSurface.implicitHeight
        onDismissed: root.model.isTimelineFilterPresented = false

        ReviewPanelSurface {
            id: filterSurface

            anchors.fill: parent
            implicitWidth: filters.width + 2 * padding
            implicitHeight: filters.implicitHeight + 2 * padding

            TimelineFilterPanel {
                id: filters

                model: root.model
            }
        }
    }

    UpwardPanelPresenter {
        objectName: "speedPanel"
        anchorItem: speedButton
        presented: root.model.isPlaybackRatePresented
        implicitWidth: speedSurface.implicitWidth
        implicitHeight: speedSurface.implicitHeight
        onDismissed: root.model.isPlaybackRatePresented = false

        ReviewPanelSurface {
            id: speedSurface

            anchors.fill: parent
            implicitWidth: rates.width + 2 * padding
            implicitHeight: rates.implicitHeight + 2 * padding

            PlaybackRatePanel {
                id: rates

                model: root.model
            }
        }
    }

    UpwardPanelPresenter {
        objectName: "volumePanel"
        anchorItem: volumeControl.muteButton
        presented: root.model.showsVolumePopUp
        implicitWidth: volumeSurface.implicitWidth
        implicitHeight: volumeSurface.implicitHeight
        onDismissed: root.model.isVolumePresented = false

        ReviewPanelSurface {
            id: volumeSurface

            anchors.fill: parent
            implicitWidth: verticalVolume.width + 2 * padding
            implicitHeight: verticalVolume.implicitHeight + 2 * padding

            VerticalPlayerVolumeControl {
                id: verticalVolume

                volume: root.model.volume
            }
        }
    }
}
