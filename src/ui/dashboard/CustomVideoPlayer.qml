pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Kestrum.Style
import Kestrum.Review
import Kestrum.Dashboard

// The movie's surface with its optional scrubber and controls row (back 5 seconds, play or pause,
// forward 5 seconds, the times, the speed menu) under it, behind a divider. It knows no recording: all it
// shows and does goes through the surface model.
Item {
    id: player

    required property VideoPlayerSurfaceModel model
    property QtObject videoPlayer
    property var preparedPlayers: []
    property bool showsScrubber: true
    property bool showsControls: true
    readonly property real barHeight: (player.showsScrubber ? scrubber.height : 0)
                                      + (player.showsControls ? controls.height : 0)
                                      + (player.showsScrubber || player.showsControls ? Style.spacingM : 0)

    PlayerSurface {
        objectName: "playerSurface"
        width: parent.width
        height: parent.height - player.barHeight
        model: player.model
        player: player.videoPlayer
        preparedPlayers: player.preparedPlayers
    }

    Rectangle {
        objectName: "playerControlsBar"
        y: parent.height - player.barHeight
        width: parent.width
        height: player.barHeight
        visible: player.barHeight > 0
        color: Style.surface

        Rectangle {
            width: parent.width
            height: Style.hairline
            color: Style.separator
        }

        Item {
            id: scrubber

            objectName: "playerScrubber"
            x: Style.spacingL
            y: Style.spacingS
            width: parent.width - 2 * Style.spacingL
            height: 16
            visible: player.showsScrubber

            Accessible.role: Accessible.Slider
            Accessible.name: player.model.positionAccessibilityLabel
            Accessible.description: player.model.positionAccessibilityValue

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                height: 4
                radius: 2
                color: Style.surfaceSunken

                Rectangle {
                    width: parent.width * player.model.scrubberValue / player.model.scrubberMaximum
                    height: parent.height
                    radius: 2
                    color: Style.accent
                }
            }

            Rectangle {
                x: (scrubber.width - width) * player.model.scrubberValue / player.model.scrubberMaximum
                anchors.verticalCenter: parent.verticalCenter
                width: 12
                height: 12
                radius: 6
                color: Style.textOnAccent
                border.color: Style.accent
                border.width: 2
            }

            MouseArea {
                anchors.fill: parent
                preventStealing: true
                onPressed: mouse => player.model.seek(mouse.x / width * player.model.scrubberMaximum)
                onPositionChanged: mouse => player.model.seek(mouse.x / width * player.model.scrubberMaximum)
            }
        }

        Row {
            id: controls

            objectName: "playerControlsRow"
            x: Style.spacingL
            y: (player.showsScrubber ? scrubber.y + scrubber.height : Style.spacingS)
            height: 32
            spacing: Style.spacingS
            visible: player.showsControls

            TimelineControlButton {
                anchors.verticalCenter: parent.verticalCenter
                symbolName: player.model.backSymbol
                toolTip: player.model.backHelp
                onClicked: player.model.skipBackward()
            }

            TimelineControlButton {
                objectName: "playerPlayPauseButton"
                anchors.verticalCenter: parent.verticalCenter
                implicitWidth: player.model.playPauseWidth + 2 * Style.spacingS
                symbolName: player.model.playPauseSymbol
                toolTip: player.model.playPauseHelp
                onClicked: player.model.togglePlayPause()
            }

            TimelineControlButton {
                anchors.verticalCenter: parent.verticalCenter
                symbolName: player.model.forwardSymbol
                toolTip: player.model.forwardHelp
                onClicked: player.model.skipForward()
            }

            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: player.model.currentTimeText + player.model.timeSeparator + player.model.durationText
                font: Style.captionSemibold
                color: Style.textSecondary
            }

            TimelineControlButton {
                id: speedButton

                objectName: "playerSpeedButton"
                anchors.verticalCenter: parent.verticalCenter
                text: player.model.playbackRate + "×"
                toolTip: player.model.speedHelp
                highlighted: speedMenu.visible
                onClicked: speedMenu.open()
            }
        }

        T.Popup {
            id: speedMenu

            x: controls.x + speedButton.x
            y: -implicitHeight - Style.spacingS
            padding: Style.spacingXS
            implicitWidth: 84
            implicitHeight: rates.implicitHeight + speedMenu.topPadding + speedMenu.bottomPadding

            background: KestrumCardModifier {
                hoverEnabled: false
                padding: 0
            }

            Column {
                id: rates

                width: speedMenu.availableWidth

                Repeater {
                    model: player.model.speedRates

                    delegate: Rectangle {
                        id: rateRow

                        required property real rate
                        required property string label
                        required property bool isSelected

                        width: rates.width
                        height: 24
                        radius: Style.radiusSmall
                        color: rateHover.hovered ? Style.surfaceHovered : "transparent"

                        Text {
                            anchors.centerIn: parent
                            text: rateRow.label
                            font: rateRow.isSelected ? Style.captionSemibold : Style.caption
                            color: rateRow.isSelected ? Style.accent : Style.textPrimary
                        }

                        HoverHandler {
                            id: rateHover
                        }

                        TapHandler {
                            onTapped: {
                                player.model.selectRate(rateRow.rate);
                                speedMenu.close();
                            }
                        }
                    }
                }
            }
        }
    }
}
