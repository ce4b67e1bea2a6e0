import QtQuick
import Kestrum.Style

// A switch with its title on the left; a tap asks for the other state through `toggled`, and the switch
// shows `isOn` as the model holds it (a change that fails leaves it as it was).
Item {
    id: row

    property string title
    property bool isOn
    signal toggled(bool on)

    implicitHeight: Math.max(label.implicitHeight, 24)
    opacity: row.enabled ? 1 : 0.45

    Text {
        id: label

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        text: row.title
        font: Style.body
        color: Style.textPrimary
    }

    Rectangle {
        id: track

        objectName: "switchTrack"
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: 38
        height: 22
        radius: 11
        color: row.isOn ? Style.accent : Style.separator

        Rectangle {
            x: row.isOn ? track.width - width - 2 : 2
            anchors.verticalCenter: parent.verticalCenter
            width: 18
            height: 18
            radius: 9
            color: "white"
            border.color: Style.border
            border.width: Style.hairline

            Behavior on x {
                NumberAnimation {
                    duration: Style.hoverDurationMs
                }
            }
        }

        TapHandler {
            enabled: row.enabled
            onTapped: row.toggled(!row.isOn)
        }

        HoverHandler {
            enabled: row.enabled
            cursorShape: Qt.PointingHandCursor
        }
    }
}
