import QtQuick
import Kestrum.Dashboard

// The surface the movie plays on. Every press goes to the surface model with its click count: it waits
// out the double-click interval before a single click counts, so a double click never toggles playback.
PlayerLayerView {
    id: surface

    required property VideoPlayerSurfaceModel model

    Binding {
        target: surface.model
        property: "doubleClickIntervalMs"
        value: Qt.styleHints.mouseDoubleClickInterval
    }

    MouseArea {
        objectName: "playerSurfaceClicks"
        anchors.fill: parent
        // The second press of a double click arrives as a press and then as the double click.
        onPressed: surface.model.mouseDown(1)
        onDoubleClicked: surface.model.mouseDown(2)
    }
}
