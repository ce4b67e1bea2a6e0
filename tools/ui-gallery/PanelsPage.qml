import QtQuick
import Kestrum.Style
import Kestrum.Review
import Kestrum.Gallery

// The review panels as the review window lays them out: the scoreboard's header and rows over the movie,
// the timeline strip under it, all following the moving playhead of the gallery's player.
Item {
    id: page

    // The panels appear with something to show: the store's version first, as the review window does.
    Component.onCompleted: DataDragonAssets.refreshVersion()

    // Stands in for the movie's picture, which has no appearance of its own: a dark frame in both.
    Rectangle {
        id: movie

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: GalleryPanels.showsTimeline ? strip.top : parent.bottom
        gradient: Gradient {
            GradientStop {
                position: 0
                color: "#1d2b24"
            }
            GradientStop {
                position: 1
                color: "#0e1411"
            }
        }

        Text {
            anchors.centerIn: parent
            text: "Movie"
            font: Style.title
            color: "#3a4a42"
        }
    }

    Column {
        anchors.top: movie.top
        anchors.topMargin: Style.spacingXXL
        anchors.horizontalCenter: movie.horizontalCenter
        width: Math.min(movie.width - 2 * Style.spacingXXL, 1320)
        spacing: Style.spacingM
        visible: GalleryPanels.showsScoreboard

        RecordingScoreboardHeaderView {
            width: parent.width
            model: GalleryPanels.scoreboard
        }

        RecordingScoreboardView {
            width: parent.width
            model: GalleryPanels.scoreboard
        }
    }

    GameTimelineView {
        id: strip

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        visible: GalleryPanels.showsTimeline
        model: GalleryPanels.timeline
    }
}
