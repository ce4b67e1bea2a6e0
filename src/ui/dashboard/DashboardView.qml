pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review
import Kestrum.Dashboard

// The review window's content: the sidebar on the left; on the right the movie with the timeline strip
// under it, the scoreboard panels over it (Tab held, O pinned), the toast, and in place of the movie
// "No Match Selected", "Loading Video..." over the thumbnail, or the damaged movie's message. Every key
// goes to the controller, which says whether it was used; Tab reaches it through the application's key
// filter, before any focus handling.
Rectangle {
    id: view

    required property DashboardController controller
    readonly property real minimumWidth: view.controller.minimumWidth
    readonly property real minimumHeight: view.controller.minimumHeight

    color: Style.background
    focus: true

    Keys.onPressed: event => event.accepted = view.controller.handleKey(
        event.key, event.modifiers, event.text, event.isAutoRepeat, true, sidebar.list.activeFocus)
    Keys.onReleased: event => event.accepted = view.controller.handleKey(
        event.key, event.modifiers, event.text, event.isAutoRepeat, false, sidebar.list.activeFocus)

    DashboardSidebar {
        id: sidebar

        objectName: "dashboardSidebar"
        width: implicitWidth
        height: parent.height
        model: view.controller.sidebar
    }

    Item {
        id: detail

        objectName: "dashboardDetail"
        x: sidebar.width
        width: parent.width - sidebar.width
        height: parent.height

        Rectangle {
            id: movieArea

            objectName: "movieArea"
            width: parent.width
            height: parent.height - (timeline.visible ? timeline.height : 0)
            color: view.controller.hasSelection ? "black" : Style.background
            activeFocusOnTab: false
            onActiveFocusChanged: view.controller.acceptsPlaybackKeys = movieArea.activeFocus

            CustomVideoPlayer {
                id: player

                objectName: "customVideoPlayer"
                anchors.fill: parent
                visible: view.controller.hasSelection && !view.controller.showsDamagedMessage
                model: view.controller.surface
                videoPlayer: view.controller.playback.playerObject
                preparedPlayers: view.controller.preparedPlayerObjects
                // The strip under the movie carries the play button, the track and the speed.
                showsScrubber: false
                showsControls: false
            }

            // While the recording loads: its thumbnail, dimmed, under "Loading Video...".
            Item {
                objectName: "loadingOverlay"
                anchors.fill: parent
                opacity: view.controller.showsLoadingOverlay ? 1 : 0
                visible: opacity > 0

                Behavior on opacity {
                    NumberAnimation {
                        duration: view.controller.loadingFadeMs
                        easing.type: Easing.OutCubic
                    }
                }

                Rectangle {
                    anchors.fill: parent
                    color: "black"
                }

                Image {
                    objectName: "loadingThumbnail"
                    anchors.fill: parent
                    fillMode: Image.PreserveAspectFit
                    asynchronous: false
                    cache: false
                    visible: view.controller.hasThumbnail
                    source: view.controller.hasThumbnail ? "image://dashboard/" + view.controller.thumbnailID : ""
                    opacity: 0.55
                }

                Rectangle {
                    anchors.centerIn: parent
                    width: loadingRow.implicitWidth + 2 * Style.spacingL
                    height: 40
                    radius: height / 2
                    color: Qt.rgba(0, 0, 0, 0.55)

                    Row {
                        id: loadingRow

                        anchors.centerIn: parent
                        spacing: Style.spacingS

                        // Three dots that pulse in turn while the movie loads.
                        Repeater {
                            model: 3

                            delegate: Rectangle {
                                id: dot

                                required property int index

                                anchors.verticalCenter: parent.verticalCenter
                                width: 6
                                height: 6
                                radius: 3
                                color: "white"

                                SequentialAnimation on opacity {
                                    running: view.controller.showsLoadingOverlay
                                    loops: Animation.Infinite

                                    PauseAnimation {
                                        duration: dot.index * 160
                                    }
                                    NumberAnimation {
                                        from: 0.3
                                        to: 1
                                        duration: 320
                                    }
                                    NumberAnimation {
                                        from: 1
                                        to: 0.3
                                        duration: 320
                                    }
                                    PauseAnimation {
                                        duration: (2 - dot.index) * 160
                                    }
                                }
                            }
                        }

                        Text {
                            objectName: "loadingText"
                            anchors.verticalCenter: parent.verticalCenter
                            text: view.controller.loadingText
                            font: Style.calloutSemibold
                            color: "white"
                        }
                    }
                }
            }

            MovieAreaMessage {
                objectName: "noSelectionMessage"
                anchors.centerIn: parent
                visible: !view.controller.hasSelection
                symbolName: view.controller.noSelectionSymbol
                title: view.controller.noSelectionTitle
                text: view.controller.noSelectionMessage
            }

            Rectangle {
                anchors.fill: parent
                visible: view.controller.showsDamagedMessage
                color: Style.background

                MovieAreaMessage {
                    objectName: "damagedMessage"
                    anchors.centerIn: parent
                    symbolName: view.controller.damagedSymbol
                    title: view.controller.damagedTitle
                    text: view.controller.damagedMessage
                    ink: Style.warning
                }
            }

            // The scoreboard over the movie: the header at the top, the players under it.
            Item {
                id: scoreboard

                objectName: "scoreboardPanels"
                anchors.fill: parent
                anchors.margins: Style.spacingL
                opacity: view.controller.showsScoreboard && view.controller.hasSelection ? 1 : 0
                visible: opacity > 0

                Behavior on opacity {
                    enabled: view.controller.scoreboardChangeAnimates

                    NumberAnimation {
                        duration: view.controller.scoreboardAnimationMs
                        easing.type: Easing.InOutQuad
                    }
                }

                RecordingScoreboardHeaderView {
                    id: scoreboardHeader

                    anchors.horizontalCenter: parent.horizontalCenter
                    width: Math.min(parent.width, 760)
                    height: implicitHeight
                    model: view.controller.scoreboard
                }

                RecordingScoreboardView {
                    anchors.horizontalCenter: parent.horizontalCenter
                    y: scoreboardHeader.height + Style.spacingM
                    width: Math.min(parent.width, 1040)
                    height: Math.min(implicitHeight, parent.height - y)
                    model: view.controller.scoreboard
                }
            }

            DashboardToastView {
                anchors.horizontalCenter: parent.horizontalCenter
                y: Style.spacingXL
                playback: view.controller.playback
            }
        }

        GameTimelineView {
            id: timeline

            objectName: "timelineStrip"
            y: movieArea.height
            width: parent.width
            height: implicitHeight
            visible: view.controller.showsTimeline
            model: view.controller.timeline
        }
    }

    // The guide's page over the window; a click outside it or Escape closes it.
    Rectangle {
        objectName: "guidePage"
        anchors.fill: parent
        visible: view.controller.isGuidePresented
        color: Qt.rgba(0, 0, 0, 0.35)

        MouseArea {
            anchors.fill: parent
            onClicked: view.controller.isGuidePresented = false
        }

        DashboardGuideCard {
            anchors.centerIn: parent
            width: Math.min(560, parent.width - 2 * Style.spacingXL)
            height: Math.min(implicitHeight, parent.height - 2 * Style.spacingXL)
            controller: view.controller
        }
    }

    FileActionAlert {
        anchors.fill: parent
        controller: view.controller
    }

    Connections {
        target: view.controller

        function onAcceptsPlaybackKeysChanged() {
            if (view.controller.acceptsPlaybackKeys)
                movieArea.forceActiveFocus();
        }
    }
}
