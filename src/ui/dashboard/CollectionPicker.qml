pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Dashboard

// The two collections (every full match, the favourites) side by side, each with its count; the chosen
// one stands out (the header under the picker shows its symbol).
Rectangle {
    id: picker

    required property DashboardSidebarModel sidebar

    implicitHeight: 30
    radius: Style.radiusMedium
    color: Style.surfaceSunken
    border.color: Style.border
    border.width: Style.hairline

    Row {
        anchors.fill: parent
        anchors.margins: 2

        Repeater {
            model: picker.sidebar.collections

            delegate: Rectangle {
                id: segment

                required property int collection
                required property string title
                required property string countText
                required property bool isSelected

                objectName: "collection:" + segment.collection
                width: (picker.width - 4) / 2
                height: picker.height - 4
                radius: Style.radiusSmall
                color: segment.isSelected ? Style.surface : (segmentHover.hovered ? Style.surfaceHovered : "transparent")
                border.color: segment.isSelected ? Style.border : "transparent"
                border.width: Style.hairline

                Row {
                    anchors.centerIn: parent
                    width: Math.min(implicitWidth, segment.width - 2 * Style.spacingS)
                    spacing: Style.spacingXS

                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        width: Math.min(implicitWidth, segment.width - 2 * Style.spacingS - count.implicitWidth
                                        - Style.spacingXS)
                        text: segment.title
                        elide: Text.ElideRight
                        font: segment.isSelected ? Style.captionSemibold : Style.caption
                        color: segment.isSelected ? Style.textPrimary : Style.textSecondary
                    }

                    Text {
                        id: count

                        anchors.verticalCenter: parent.verticalCenter
                        text: segment.countText
                        font: Style.caption
                        color: Style.textTertiary
                    }
                }

                HoverHandler {
                    id: segmentHover
                }

                TapHandler {
                    onTapped: picker.sidebar.selectCollection(segment.collection)
                }
            }
        }
    }
}
