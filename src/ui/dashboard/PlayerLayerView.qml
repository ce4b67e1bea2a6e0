import QtQuick
import Kestrum.Player

// The movie's picture: the player's frames scaled to fit with their aspect kept, on black. The player is
// any object the window hands over; one that mpv cannot draw (none, or a test's fake) leaves it black.
// The prepared players (the neighbours') decode their first picture here unseen, to be shown at once.
Rectangle {
    id: layer

    property QtObject player
    property var preparedPlayers: []

    color: "black"

    VideoPlayerLayer {
        objectName: "videoPlayerLayer"
        anchors.fill: parent
        player: layer.player
        preparedPlayers: layer.preparedPlayers
    }
}
