pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Dashboard

// One recording in the sidebar: map art behind, the champion's portrait with the role's art, the KDA
// line and ratio, the map, and the favourite star under the pointer; a pending deletion's countdown with
// its undo in place of that body; the damaged movie's note. Clicks, the star, the context menu and the
// swipe all go to the sidebar model by row; the card only draws the swipe's offset and symbol.
Item {
    id: card

    required property DashboardSidebarModel sidebar
    required property int index
    required property string moviePath
    required property string title
    required property string mapArtName
    required property string mapLabel
    required property string championIdentifier
    required property string championVersion
    required property string roleArtName
    required property string roleLabel
    required property string kdaLine
    required property string kdaRatio
    required property string kdaHelp
    required property bool isSelected
    required property bool isFavorite
    required property string favoriteSymbol
    required property string favoriteHelp
    required property bool isPendingDeletion
    required property string pendingTitle
    required property string pendingCountdown
    required property string pendingSymbol
    required property bool isDamaged
    required property string damagedText
    required property string accessibleLabel
    required property string leadingSymbol
    required property string trailingSymbol
    required property string leadingActionName
    required property string trailingActionName
    required property real swipeOffset
    required property string swipeSide
    required property real swipeIconScale
    required property real swipeIconOpacity
    required property real swipeIconSize
    required property var contextMenu
    required property string section
    // The first card of a session carries the session's header above it.
    readonly property bool startsSection: card.ListView.section !== card.ListView.previousSection
    readonly property real headerHeight: card.startsSection ? 26 : 0
    // At least 78; more when the title takes a second line (a long queue name with champion and lane).
    readonly property real cardHeight: Math.max(78, content.implicitHeight + 2 * Style.spacingS)
    readonly property bool uncoversLeading: card.swipeSide === "leading"

    signal contextMenuRequested(int row, var entries, point scenePoint)

    objectName: "matchCard:" + card.moviePath
    width: card.sidebar.contentWidth
    height: card.cardHeight + card.headerHeight

    Text {
        objectName: "sessionHeader"
        visible: card.startsSection
        width: card.width
        height: card.headerHeight
        verticalAlignment: Text.AlignVCenter
        leftPadding: Style.spacingXS
        text: card.section
        font: Style.captionSemibold
        color: Style.textTertiary
        elide: Text.ElideRight
    }

    Accessible.role: Accessible.Button
    Accessible.name: card.accessibleLabel
    // The swipe's two actions for those who cannot swipe: Toggle is the favourite, and each side is
    // also a named button inside the card (below), as a screen reader lists a row's actions.
    Accessible.onToggleAction: card.sidebar.performSwipeAction(card.index, "leading")

    // The action uncovered behind the card while it moves aside.
    LucideIcon {
        objectName: "swipeSymbol"
        x: card.uncoversLeading ? Style.spacingL : card.width - width - Style.spacingL
        y: card.headerHeight + (card.cardHeight - height) / 2
        width: card.swipeIconSize
        height: card.swipeIconSize
        visible: card.swipeSide.length > 0
        opacity: card.swipeIconOpacity
        scale: card.swipeIconScale
        symbolName: card.uncoversLeading ? card.leadingSymbol : card.trailingSymbol
        color: card.uncoversLeading ? Style.yellow : Style.error
    }

    // The pointer on the card: a click plays it, the right button opens the menu, and a drag across is
    // the swipe, counted from the press point in scene coordinates (which do not move with the card).
    // The drag's proxy only tells the mouse area that a drag across has begun, so that a swipe is no
    // click and the list does not take a drag across for a scroll; a drag mostly down is the list's, which
    // then cancels the swipe.
    MouseArea {
        id: pointer

        objectName: "matchCardPointer"
        y: card.headerHeight
        width: card.width
        height: card.cardHeight
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        hoverEnabled: false
        drag.target: dragProxy
        drag.axis: Drag.XAxis
        onPressed: mouse => {
            // A card taken in hand gives the keys to the list (Up, Down and Delete are the list's).
            card.ListView.view.forceActiveFocus();
            if (mouse.button !== Qt.LeftButton)
                return;
            const point = pointer.mapToItem(null, mouse.x, mouse.y);
            card.sidebar.pressCard(card.index, point.x, point.y);
        }
        onPositionChanged: mouse => {
            const point = pointer.mapToItem(null, mouse.x, mouse.y);
            card.sidebar.dragCard(card.index, point.x, point.y);
        }
        onReleased: mouse => {
            if (mouse.button !== Qt.LeftButton)
                return;
            const point = pointer.mapToItem(null, mouse.x, mouse.y);
            card.sidebar.releaseCard(card.index, point.x, point.y);
            dragProxy.x = 0;
        }
        onCanceled: {
            card.sidebar.cancelSwipe(card.index);
            dragProxy.x = 0;
        }
        onClicked: mouse => {
            if (mouse.button === Qt.RightButton)
                card.contextMenuRequested(card.index, card.contextMenu, pointer.mapToItem(null, mouse.x, mouse.y));
            else
                card.sidebar.clickCard(card.index);
        }
    }

    Item {
        id: dragProxy
    }

    KestrumCardModifier {
        id: body

        objectName: "matchCardBody"
        x: card.swipeOffset
        y: card.headerHeight
        width: card.width
        height: card.cardHeight
        padding: 0
        lifted: card.isSelected

        Rectangle {
            anchors.fill: parent
            radius: Style.radiusCard
            color: "transparent"
            border.color: Style.accent
            border.width: 2
            visible: card.isSelected
        }

        Row {
            id: content

            x: card.sidebar.cardHorizontalPadding
            anchors.verticalCenter: parent.verticalCenter
            spacing: card.sidebar.cardElementSpacing
            visible: !card.isPendingDeletion

            Item {
                width: 44
                height: 52

                DataDragonImage {
                    objectName: "championPortrait"
                    x: 2
                    y: 0
                    width: 35
                    height: 35
                    kind: DataDragonPicture.Champion
                    identifier: card.championIdentifier
                    version: card.championVersion
                }

                Rectangle {
                    x: 24
                    y: 22
                    width: 20
                    height: 20
                    radius: 10
                    color: Style.surface
                    border.color: Style.border
                    border.width: Style.hairline
                    visible: card.roleArtName.length > 0

                    CommunityDragonIcon {
                        anchors.centerIn: parent
                        width: 14
                        height: 14
                        artName: card.roleArtName
                    }
                }

                Text {
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.bottom: parent.bottom
                    width: parent.width
                    horizontalAlignment: Text.AlignHCenter
                    text: card.roleLabel
                    font: Style.caption
                    color: Style.textSecondary
                    elide: Text.ElideRight
                }
            }

            // The KDA column: at least its 154 by 52, and whatever the card leaves beside the star's place
            // (kept whether or not the star shows, so that hovering never reflows the title). The title
            // wraps onto a second line rather than losing its lane.
            Column {
                objectName: "kdaColumn"
                width: Math.max(154, card.width - 2 * card.sidebar.cardHorizontalPadding - 44
                                         - 2 * card.sidebar.cardElementSpacing - favorite.width)
                height: Math.max(52, implicitHeight)
                anchors.verticalCenter: parent.verticalCenter
                spacing: 1

                Text {
                    objectName: "matchCardTitle"
                    width: parent.width
                    text: card.title
                    font: Style.calloutSemibold
                    color: Style.textPrimary
                    wrapMode: Text.Wrap
                    maximumLineCount: 2
                    elide: Text.ElideRight
                }

                Row {
                    spacing: Style.spacingS

                    Text {
                        text: card.kdaLine
                        font: Style.captionSemibold
                        color: Style.textPrimary
                    }

                    Text {
                        text: card.kdaRatio
                        font: Style.caption
                        color: Style.textSecondary
                    }
                }

                Row {
                    width: parent.width
                    spacing: Style.spacingXS

                    CommunityDragonIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 14
                        height: 14
                        visible: card.mapArtName.length > 0 && !card.isDamaged
                        artName: card.mapArtName
                    }

                    LucideIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 12
                        height: 12
                        visible: card.isDamaged
                        symbolName: "exclamationmark.triangle.fill"
                        color: Style.error
                    }

                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        text: card.isDamaged ? card.damagedText : card.mapLabel
                        font: Style.caption
                        color: card.isDamaged ? Style.error : Style.textTertiary
                        elide: Text.ElideRight
                    }
                }
            }

            Item {
                id: favorite

                objectName: "favoriteButton"
                width: 22
                height: 26
                anchors.verticalCenter: parent.verticalCenter

                LucideIcon {
                    anchors.centerIn: parent
                    visible: body.hovered || card.isFavorite
                    width: Style.iconSmall
                    height: Style.iconSmall
                    symbolName: card.favoriteSymbol
                    color: card.isFavorite ? Style.yellow : (starHover.hovered ? Style.textPrimary : Style.textTertiary)
                }

                HoverHandler {
                    id: starHover

                    cursorShape: Qt.PointingHandCursor
                }

                MouseArea {
                    anchors.fill: parent
                    enabled: body.hovered || card.isFavorite
                    onClicked: card.sidebar.toggleFavorite(card.index)
                }
            }
        }

        // A pending deletion: the countdown and its undo in place of the body.
        Item {
            objectName: "pendingDeletion"
            anchors.fill: parent
            anchors.leftMargin: Style.spacingL
            anchors.rightMargin: Style.spacingL
            visible: card.isPendingDeletion

            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: Style.spacingS

                Rectangle {
                    anchors.verticalCenter: parent.verticalCenter
                    width: 28
                    height: 28
                    radius: 14
                    color: "transparent"
                    border.color: Style.error
                    border.width: 2

                    Text {
                        anchors.centerIn: parent
                        text: card.pendingCountdown
                        font: Style.captionSemibold
                        color: Style.error
                    }
                }

                Column {
                    anchors.verticalCenter: parent.verticalCenter
                    width: card.width - 2 * Style.spacingL - 28 - 30 - 2 * Style.spacingS

                    Text {
                        text: card.pendingTitle
                        font: Style.calloutSemibold
                        color: Style.textPrimary
                    }

                    Text {
                        width: parent.width
                        text: card.title
                        font: Style.caption
                        color: Style.textSecondary
                        elide: Text.ElideRight
                    }
                }
            }

            Rectangle {
                objectName: "undoDeletionButton"
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                width: 30
                height: 30
                radius: 15
                color: undoHover.hovered ? Style.surfaceHovered : Style.surfaceSunken
                border.color: Style.border
                border.width: Style.hairline

                LucideIcon {
                    anchors.centerIn: parent
                    width: Style.iconSmall
                    height: Style.iconSmall
                    symbolName: card.pendingSymbol
                    color: Style.accent
                }

                HoverHandler {
                    id: undoHover

                    cursorShape: Qt.PointingHandCursor
                }

                MouseArea {
                    anchors.fill: parent
                    onClicked: card.sidebar.performSwipeAction(card.index, "trailing")
                }
            }
        }
    }

    Accessible.onPressAction: card.sidebar.clickCard(card.index)

    // The swipe's actions as buttons of their own, drawn by nothing (the card draws the swipe), over the
    // card so that assistive technology finds them in it; they take no pointer input.
    Item {
        objectName: "leadingSwipeAction"
        y: card.headerHeight
        width: card.width / 2
        height: card.cardHeight
        Accessible.role: Accessible.Button
        Accessible.name: card.leadingActionName
        Accessible.onPressAction: card.sidebar.performSwipeAction(card.index, "leading")
    }

    Item {
        objectName: "trailingSwipeAction"
        x: card.width / 2
        y: card.headerHeight
        width: card.width / 2
        height: card.cardHeight
        Accessible.role: Accessible.Button
        Accessible.name: card.trailingActionName
        Accessible.onPressAction: card.sidebar.performSwipeAction(card.index, "trailing")
    }
}
