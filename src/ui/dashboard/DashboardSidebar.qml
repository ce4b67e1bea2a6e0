pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review
import Kestrum.Dashboard

// The left side of the review window: the "Library" head with the guide's button, the collections and
// the filters, the collection's header with its count, and the cards in a list with a section per
// session. The list creates only the cards in view. Keys on the list go to the window's key handling
// (it owns Up, Down and Delete); where the list scrolls comes from the sidebar model.
Rectangle {
    id: sidebar

    required property DashboardSidebarModel model
    readonly property alias list: cards

    implicitWidth: sidebar.model.width
    color: Style.background

    Rectangle {
        anchors.right: parent.right
        width: Style.hairline
        height: parent.height
        color: Style.separator
    }

    Item {
        id: head

        x: sidebar.model.edgeInset
        y: Style.spacingL
        width: sidebar.model.contentWidth
        height: 28

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: sidebar.model.title
            font: Style.title3
            color: Style.textPrimary
        }

        TimelineControlButton {
            id: filterButton

            objectName: "filterButton"
            anchors.right: guideButton.left
            anchors.rightMargin: Style.spacingXS
            anchors.verticalCenter: parent.verticalCenter
            implicitHeight: 28
            symbolName: sidebar.model.filtersSymbol
            toolTip: sidebar.model.filtersTitle
            highlighted: sidebar.model.hasActiveFilters || sidebar.model.isRecordingFiltersPresented
            onClicked: sidebar.model.isRecordingFiltersPresented = !sidebar.model.isRecordingFiltersPresented

            SidebarFilterPanel {
                anchors.fill: parent
                sidebar: sidebar.model
            }
        }

        TimelineControlButton {
            id: guideButton

            objectName: "guideButton"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            implicitHeight: 28
            symbolName: sidebar.model.guideButtonSymbol
            toolTip: sidebar.model.guideButtonHelp
            onClicked: sidebar.model.presentGuide()
        }
    }

    CollectionPicker {
        id: controls

        x: sidebar.model.edgeInset
        y: head.y + head.height + Style.spacingM
        width: sidebar.model.contentWidth
        sidebar: sidebar.model
    }

    Row {
        id: sectionHeader

        objectName: "collectionHeader"
        x: sidebar.model.edgeInset + Style.spacingXS
        y: controls.y + controls.height + Style.spacingL
        height: 18
        spacing: Style.spacingXS

        LucideIcon {
            anchors.verticalCenter: parent.verticalCenter
            width: Style.iconSmall
            height: Style.iconSmall
            symbolName: sidebar.model.sectionSymbol
            color: Style.textSecondary
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: sidebar.model.sectionTitle
            font: Style.captionSemibold
            color: Style.textSecondary
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: sidebar.model.sectionCountText
            font: Style.caption
            color: Style.textTertiary
        }
    }

    ListView {
        id: cards

        objectName: "matchCardList"
        x: sidebar.model.edgeInset
        y: sectionHeader.y + sectionHeader.height + Style.spacingXS
        width: sidebar.model.contentWidth
        height: sidebar.height - y
        clip: true
        spacing: sidebar.model.cardSpacing
        topMargin: sidebar.model.contentMargin
        bottomMargin: sidebar.model.contentMargin
        keyNavigationEnabled: false
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: false
        model: sidebar.model.cards
        section.property: "section"
        delegate: MatchCard {
            sidebar: sidebar.model
            onContextMenuRequested: (row, entries, scenePoint) => {
                // Inside the card, "sidebar" and "contextMenu" name the card's own properties: the menu
                // is reached by an id of its own, its point is in the sidebar, the list's parent.
                const local = cards.parent.mapFromItem(null, scenePoint);
                cardMenu.openAt(row, entries, Qt.point(local.x, local.y));
            }
        }

        Rectangle {
            anchors.right: parent.right
            width: 4
            radius: 2
            y: cards.visibleArea.yPosition * cards.height
            height: cards.visibleArea.heightRatio * cards.height
            visible: cards.visibleArea.heightRatio < 1
            color: Style.textTertiary
            opacity: cards.moving ? 0.6 : 0.25
        }
    }

    Text {
        objectName: "emptyLibraryMessage"
        x: sidebar.model.edgeInset + Style.spacingS
        y: cards.y + Style.spacingL
        width: sidebar.model.contentWidth - 2 * Style.spacingS
        visible: sidebar.model.isEmpty
        text: sidebar.model.emptyMessage
        wrapMode: Text.WordWrap
        font: Style.callout
        color: Style.textSecondary
    }

    CardContextMenu {
        id: cardMenu

        sidebar: sidebar.model
    }

    Connections {
        target: sidebar.model

        function onScrollTargetChanged() {
            if (sidebar.model.scrollTargetKind === "match")
                cards.positionViewAtIndex(sidebar.model.scrollTargetRow, ListView.Contain);
            else if (sidebar.model.scrollTargetRow >= 0)
                cards.positionViewAtIndex(sidebar.model.scrollTargetRow, ListView.Beginning);
            else
                cards.positionViewAtBeginning();
        }
    }
}
