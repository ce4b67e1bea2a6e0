pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review

// The card of the hovered marker, above the strip, in one line so that it leaves the track in view: the
// event's art (its symbol while the art is missing), its title and time and, for kills and multikills,
// the killer and the victims.
KestrumCardModifier {
    id: card

    required property TimelineHoverCard hoverCard

    hoverEnabled: false
    padding: Style.spacingM
    implicitWidth: line.implicitWidth + 2 * card.padding
    implicitHeight: line.implicitHeight + 2 * card.padding

    Row {
        id: line

        spacing: Style.spacingM

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: 30
            height: 30
            radius: Style.radiusMedium
            color: art.known ? "transparent" : Style.surfaceSunken

            CommunityDragonIcon {
                id: art

                anchors.fill: parent
                artName: card.hoverCard.artName
            }

            LucideIcon {
                anchors.centerIn: parent
                width: Style.iconMedium
                height: Style.iconMedium
                visible: !art.known
                symbolName: card.hoverCard.symbolName
                color: Style.textSecondary
            }
        }

        Column {
            anchors.verticalCenter: parent.verticalCenter

            Text {
                objectName: "hoverCardTitle"
                text: card.hoverCard.title
                font: Style.headline
                color: Style.textPrimary
            }

            Text {
                text: card.hoverCard.timeText
                font: Style.caption
                color: Style.textSecondary
            }
        }

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            visible: card.hoverCard.showsPeople
            width: Style.hairline
            height: 26
            color: Style.separator
        }

        Row {
            anchors.verticalCenter: parent.verticalCenter
            visible: card.hoverCard.showsPeople
            spacing: Style.spacingXS

            EventPersonBadge {
                visible: card.hoverCard.hasKiller
                name: card.hoverCard.killerName
                championIdentifier: card.hoverCard.killerChampionIdentifier
                symbolName: card.hoverCard.killerSymbolName
                ring: Style.accent
            }

            LucideIcon {
                anchors.verticalCenter: parent.verticalCenter
                width: Style.iconSmall
                height: Style.iconSmall
                visible: card.hoverCard.hasKiller && card.hoverCard.victims.count > 0
                symbolName: "chevron.right"
                color: Style.textTertiary
            }

            Repeater {
                model: card.hoverCard.victims

                delegate: EventPersonBadge {
                    required name
                    required championIdentifier
                    required symbolName
                }
            }
        }
    }
}
