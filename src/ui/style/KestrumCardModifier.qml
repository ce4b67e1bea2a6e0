import QtQuick
import Kestrum.Style

// The card style: a rounded surface with a hairline border over a soft pre-rendered shadow, lifted a
// little while the pointer is over it (or while `lifted` says so, for a selected card). Children are the
// card's content, inset by `padding`.
Item {
    id: card

    property bool hoverEnabled: true
    property bool lifted: false
    readonly property bool hovered: hover.hovered
    readonly property bool raised: card.hovered || card.lifted
    property int padding: Style.spacingL
    property color fill: card.raised ? Style.surfaceHovered : Style.surface
    default property alias content: body.data

    BorderImage {
        anchors.fill: parent
        anchors.leftMargin: -Style.cardShadowExtent
        anchors.rightMargin: -Style.cardShadowExtent
        anchors.topMargin: -Style.cardShadowExtent + Style.cardShadowOffsetY
        anchors.bottomMargin: -Style.cardShadowExtent - Style.cardShadowOffsetY
        source: "card-shadow.png"
        border.left: Style.cardShadowBorder
        border.top: Style.cardShadowBorder
        border.right: Style.cardShadowBorder
        border.bottom: Style.cardShadowBorder
        opacity: card.raised ? Style.shadowOpacityHovered : Style.shadowOpacity

        Behavior on opacity {
            NumberAnimation {
                duration: Style.hoverDurationMs
            }
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: Style.radiusCard
        color: card.fill
        border.color: card.raised ? Style.borderHovered : Style.border
        border.width: Style.hairline

        Behavior on color {
            ColorAnimation {
                duration: Style.hoverDurationMs
            }
        }
    }

    Item {
        id: body

        anchors.fill: parent
        anchors.margins: card.padding
    }

    HoverHandler {
        id: hover

        enabled: card.hoverEnabled
    }
}
