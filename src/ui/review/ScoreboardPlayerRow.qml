pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review

// One player of the scoreboard: the champion's portrait with the level (dimmed, with the seconds to the
// respawn, while dead), the name with the champion and role, K / D / A, farm and the seven item slots.
// Under the pointer it tells the model (which shows the hover after its delay); a click copies the Riot
// ID. The local player's row is marked.
Item {
    id: row

    required property RecordingScoreboardModel scoreboard
    required property bool exists
    required property string playerID
    required property string championName
    required property string championIdentifier
    required property string displayName
    required property int level
    required property bool isDead
    required property string respawnText
    required property string kdaText
    required property int creepScore
    required property string roleName
    required property var itemIDs
    required property string rankToolTip
    required property string riotIdToolTip
    required property bool isHovered
    required property bool isLocalPlayer
    property color ink: Style.teamBlue
    property color tint: Style.teamBlueTint
    property real kdaColumnWidth: 84
    property real creepScoreColumnWidth: 40
    property real rowHorizontalPadding: 10
    readonly property real itemSide: 22

    implicitHeight: 44

    Rectangle {
        anchors.fill: parent
        visible: row.exists
        radius: Style.radiusMedium
        color: row.isHovered ? Style.surfaceHovered : (row.isLocalPlayer ? row.tint : "transparent")
        border.color: row.isLocalPlayer ? row.ink : "transparent"
        border.width: Style.hairline
    }

    Item {
        id: portrait

        x: row.rowHorizontalPadding
        anchors.verticalCenter: parent.verticalCenter
        width: 34
        height: 34
        visible: row.exists

        DataDragonImage {
            anchors.fill: parent
            kind: DataDragonPicture.Champion
            identifier: row.championIdentifier
        }

        // While dead: the portrait under a veil of the panel's ground, the seconds to the respawn over it.
        Rectangle {
            anchors.fill: parent
            visible: row.isDead
            radius: Style.radiusSmall
            color: Style.surface
            opacity: 0.72
        }

        Text {
            anchors.centerIn: parent
            visible: row.isDead
            text: row.respawnText
            font: Style.headline
            color: Style.textPrimary
        }

        Rectangle {
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.rightMargin: -4
            anchors.bottomMargin: -4
            width: Math.max(16, levelText.implicitWidth + 6)
            height: 16
            radius: 8
            color: Style.surface
            border.color: Style.border
            border.width: Style.hairline

            Text {
                id: levelText

                anchors.centerIn: parent
                text: row.level
                font: Style.captionSemibold
                color: Style.textPrimary
            }
        }

        HoverHandler {
            id: portraitHover
        }

        ReviewToolTip {
            shown: portraitHover.hovered
            below: true
            delay: 0
            text: row.rankToolTip
        }
    }

    Column {
        id: names

        anchors.left: portrait.right
        anchors.leftMargin: Style.spacingM + 2
        anchors.right: kda.left
        anchors.rightMargin: Style.spacingM
        anchors.verticalCenter: parent.verticalCenter
        visible: row.exists

        Row {
            width: parent.width
            spacing: Style.spacingXS

            Text {
                id: nameText

                width: Math.min(implicitWidth, parent.width - copyIcon.width - parent.spacing)
                text: row.displayName
                elide: Text.ElideRight
                font: Style.calloutSemibold
                color: Style.textPrimary
            }

            LucideIcon {
                id: copyIcon

                anchors.verticalCenter: nameText.verticalCenter
                width: Style.iconSmall
                height: Style.iconSmall
                opacity: row.isHovered ? 1 : 0
                symbolName: row.scoreboard.copySymbolName
                color: Style.textSecondary
            }
        }

        Row {
            width: parent.width
            spacing: Style.spacingS

            Text {
                id: championText

                width: Math.min(implicitWidth, parent.width - roleText.width - 2 * parent.spacing - 3)
                text: row.championName
                elide: Text.ElideRight
                font: Style.caption
                color: Style.textSecondary
            }

            Rectangle {
                anchors.verticalCenter: championText.verticalCenter
                width: 3
                height: 3
                radius: 1.5
                visible: roleText.visible
                color: Style.textTertiary
            }

            Text {
                id: roleText

                visible: row.roleName.length > 0
                text: row.roleName
                font: Style.caption
                color: Style.textSecondary

                HoverHandler {
                    id: roleHover
                }

                ReviewToolTip {
                    shown: roleHover.hovered
                    text: row.scoreboard.roleTitle
                }
            }
        }
    }

    Text {
        id: kda

        anchors.right: creepScore.left
        anchors.verticalCenter: parent.verticalCenter
        width: row.kdaColumnWidth
        visible: row.exists
        horizontalAlignment: Text.AlignHCenter
        text: row.kdaText
        font: Style.calloutSemibold
        color: Style.textPrimary
    }

    Text {
        id: creepScore

        anchors.right: items.left
        anchors.rightMargin: Style.spacingM
        anchors.verticalCenter: parent.verticalCenter
        width: row.creepScoreColumnWidth
        visible: row.exists
        horizontalAlignment: Text.AlignHCenter
        text: row.creepScore
        font: Style.callout
        color: Style.textSecondary
    }

    Row {
        id: items

        anchors.right: parent.right
        anchors.rightMargin: row.rowHorizontalPadding
        anchors.verticalCenter: parent.verticalCenter
        visible: row.exists
        spacing: Style.spacingXXS

        Repeater {
            model: row.itemIDs

            delegate: ScoreboardItemSlot {
                required property var modelData

                width: row.itemSide
                height: row.itemSide
                identifier: modelData > 0 ? String(modelData) : ""
            }
        }
    }

    HoverHandler {
        id: rowHover

        enabled: row.exists
        cursorShape: Qt.PointingHandCursor
        onHoveredChanged: {
            if (rowHover.hovered)
                row.scoreboard.enterRow(row.playerID);
            else
                row.scoreboard.leaveRowOf(row.playerID);
        }
    }

    TapHandler {
        enabled: row.exists
        onTapped: row.scoreboard.copyRiotId(row.playerID)
    }

    Item {
        anchors.fill: names

        ReviewToolTip {
            objectName: "riotIdToolTip"
            shown: row.isHovered
            delay: 0
            text: row.riotIdToolTip
        }
    }
}
