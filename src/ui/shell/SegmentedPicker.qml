pragma ComponentBehavior: Bound
import QtQuick
import Kestrum.Style
import Kestrum.Shell

// A segmented picker over one stored choice: one segment per option, the stored one lit (none when the
// stored value names no option); a tap stores the option.
Rectangle {
    id: picker

    required property SettingsChoice choice

    implicitWidth: segments.implicitWidth + 4
    implicitHeight: 26
    radius: Style.radiusMedium
    color: Style.surfaceSunken
    border.color: Style.border
    border.width: Style.hairline

    Row {
        id: segments

        anchors.centerIn: parent

        Repeater {
            model: picker.choice.labels

            delegate: Rectangle {
                id: segment

                required property int index
                required property string modelData
                readonly property bool selected: segment.index === picker.choice.selectedIndex

                objectName: "segment-" + segment.modelData
                width: Math.max(64, segmentLabel.implicitWidth + 2 * Style.spacingL)
                height: picker.height - 4
                radius: Style.radiusSmall
                color: segment.selected ? Style.accent : (hover.hovered ? Style.surfaceHovered : "transparent")

                Text {
                    id: segmentLabel

                    anchors.centerIn: parent
                    text: segment.modelData
                    font: segment.selected ? Style.calloutSemibold : Style.callout
                    color: segment.selected ? Style.textOnAccent : Style.textPrimary
                }

                HoverHandler {
                    id: hover

                    cursorShape: Qt.PointingHandCursor
                }

                TapHandler {
                    onTapped: picker.choice.select(segment.index)
                }
            }
        }
    }
}
