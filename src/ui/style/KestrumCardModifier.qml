import QtQuick
import Kestrum.Style

// The card style: a rounded surface with a hairline border over a soft pre-rendered shadow, lifted a
// little while the pointer is over it. Children are the card's content, inset by `padding`.
Item {
    id: card

    property bool hoverEnabled: true
    readonly property bool hovered: hover.hovered
    property int padding: Style.spacingL
    property color fill: card.hovered ? Style.surfaceHovered : Style.surface
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
        opacity: card.hovered ? Style.shadowOpacityHovered : Style.shadowOpacity

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
        border.color: card.hovered ? Style.borderHovered : Style.border
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
