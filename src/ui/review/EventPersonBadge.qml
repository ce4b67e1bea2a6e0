import QtQuick
import Kestrum.Style
import Kestrum.Review

// A killer or a victim on the hover card: the champion's portrait for a player, the symbol of what it
// is for anything else (a turret, minions, a monster); the name is its tip.
Rectangle {
    id: badge

    property string name
    property string championIdentifier
    property string symbolName
    property color ring: Style.border

    implicitWidth: 30
    implicitHeight: 30
    radius: Style.radiusMedium
    color: Style.surfaceSunken
    border.color: badge.ring
    border.width: 2

    DataDragonImage {
        anchors.fill: parent
        anchors.margins: 2
        visible: badge.championIdentifier.length > 0
        kind: DataDragonPicture.Champion
        identifier: badge.championIdentifier
    }

    LucideIcon {
        anchors.centerIn: parent
        width: Style.iconMedium
        height: Style.iconMedium
        visible: badge.championIdentifier.length === 0
        symbolName: badge.symbolName
        color: Style.textSecondary
    }

    HoverHandler {
        id: hover
    }

    ReviewToolTip {
        shown: hover.hovered
        text: badge.name
    }
}
