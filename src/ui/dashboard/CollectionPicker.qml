pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Dashboard

// The two collections (every full match, the favourites) side by side, each with its count; the chosen
// one stands out (the header under the picker shows its symbol). Each segment is as wide as its label
// and count, and the room left is shared out evenly, so "Favorite Recordings" is read whole in the
// sidebar's fixed width; only a picker too narrow for both labels elides them.
Rectangle {
    id: picker

    required property DashboardSidebarModel sidebar

    implicitHeight: 30
    radius: Style.radiusMedium
    color: Style.surfaceSunken
    border.color: Style.border
    border.width: Style.hairline

    readonly property real innerWidth: picker.width - 4
    // The segments' natural widths added up; read again whenever a segment is made or its label changes.
    readonly property real naturalWidth: {
        let total = 0;
        for (let i = 0; i < segments.count; ++i) {
            const segment = segments.itemAt(i);
            if (segment)
                total += segment.naturalWidth;
        }
        return total;
    }
    readonly property real spareWidth: picker.innerWidth - picker.naturalWidth

    Row {
        anchors.fill: parent
        anchors.margins: 2

        Repeater {
            id: segments

            model: picker.sidebar.collections

            delegate: Rectangle {
                id: segment

                required property int collection
                required property string title
                required property string countText
                required property bool isSelected

                readonly property real naturalWidth: label.implicitWidth + count.implicitWidth + Style.spacingXS
                                                     + 2 * Style.spacingS

                objectName: "collection:" + segment.collection
                width: picker.spareWidth >= 0 && segments.count > 0
                       ? segment.naturalWidth + picker.spareWidth / segments.count
                       : picker.innerWidth / Math.max(1, segments.count)
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
                        id: label

                        objectName: "collectionTitle"
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
