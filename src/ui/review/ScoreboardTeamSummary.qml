pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review

// One team's side of the header: its title and kill total in the team's colour, and its objectives (void
// grubs, the herald, the baron's power play, Elder dragons) and four dragon slots, each with its help as
// the tip. `mirrored` lays the red side out from the right edge.
Row {
    id: summary

    required property ScoreboardTeamHeader team
    property color ink: Style.teamBlue
    property bool mirrored
    property bool showsObjectives: true

    spacing: Style.spacingL
    layoutDirection: summary.mirrored ? Qt.RightToLeft : Qt.LeftToRight

    Column {
        anchors.verticalCenter: parent.verticalCenter

        Text {
            anchors.left: summary.mirrored ? undefined : parent.left
            anchors.right: summary.mirrored ? parent.right : undefined
            text: summary.team.title
            font: Style.captionSemibold
            color: summary.ink
        }

        Text {
            objectName: "teamKills"
            anchors.left: summary.mirrored ? undefined : parent.left
            anchors.right: summary.mirrored ? parent.right : undefined
            text: summary.team.killsText
            font: Style.title
            color: summary.ink
        }
    }

    Row {
        anchors.verticalCenter: parent.verticalCenter
        visible: summary.showsObjectives
        spacing: Style.spacingS
        layoutDirection: summary.layoutDirection

        Repeater {
            model: summary.team.dragonSlots

            delegate: Rectangle {
                id: slot

                required property bool isFilled
                required property string artName
                required property string helpText

                anchors.verticalCenter: parent.verticalCenter
                width: 22
                height: 22
                radius: Style.radiusSmall
                color: slot.isFilled ? "transparent" : Style.surfaceHovered
                border.color: slot.isFilled ? "transparent" : Style.border
                border.width: Style.hairline

                CommunityDragonIcon {
                    anchors.fill: parent
                    visible: slot.isFilled
                    artName: slot.artName
                }

                HoverHandler {
                    id: slotHover
                }

                ReviewToolTip {
                    shown: slotHover.hovered
                    text: slot.helpText
                }
            }
        }

        Repeater {
            model: summary.team.badges

            delegate: Item {
                id: badge

                required property string artName
                required property string text
                required property string helpText

                anchors.verticalCenter: parent.verticalCenter
                implicitWidth: badgeRow.implicitWidth
                implicitHeight: badgeRow.implicitHeight

                Row {
                    id: badgeRow

                    spacing: Style.spacingXXS
                    layoutDirection: summary.layoutDirection

                    CommunityDragonIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 22
                        height: 22
                        artName: badge.artName
                    }

                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        visible: badge.text.length > 0
                        text: badge.text
                        font: Style.footnote
                        color: Style.textPrimary
                    }
                }

                HoverHandler {
                    id: badgeHover
                }

                ReviewToolTip {
                    shown: badgeHover.hovered
                    text: badge.helpText
                }
            }
        }
    }
}
