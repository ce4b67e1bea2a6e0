import QtQuick
import Kestrum.Dashboard

// The surface the movie plays on. Every press goes to the surface model with its click count: it waits
// out the double-click interval (the platform's, which the window's owner gives the model) before a
// single click counts, so a double click never toggles playback.
PlayerLayerView {
    id: surface

    required property VideoPlayerSurfaceModel model

    MouseArea {
        objectName: "playerSurfaceClicks"
        anchors.fill: parent
        // The second press of a double click arrives as a press and then as the double click.
        onPressed: surface.model.mouseDown(1)
        onDoubleClicked: surface.model.mouseDown(2)
    }
}
