pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Kestrum.Style
import Kestrum.Dashboard

// A card's context menu at the pointer: the entries the card's model gives (label, symbol, action), each
// sent back to the sidebar model with the card's row.
Item {
    id: menu

    required property DashboardSidebarModel sidebar
    property int row: -1
    property var entries: []

    function openAt(row: int, entries: var, point: point) {
        menu.row = row;
        menu.entries = entries;
        popup.x = point.x;
        popup.y = point.y;
        popup.open();
    }

    T.Popup {
        id: popup

        objectName: "cardContextMenu"
        padding: Style.spacingXS
        implicitWidth: 220
        implicitHeight: column.implicitHeight + popup.topPadding + popup.bottomPadding

        background: KestrumCardModifier {
            hoverEnabled: false
            padding: 0
        }

        Column {
            id: column

            width: popup.availableWidth

            Repeater {
                model: menu.entries

                delegate: Rectangle {
                    id: entry

                    required property var modelData

                    objectName: "contextEntry:" + entry.modelData.label
                    width: column.width
                    height: 28
                    radius: Style.radiusSmall
                    color: entryHover.hovered ? Style.accent : "transparent"

                    LucideIcon {
                        x: Style.spacingS
                        anchors.verticalCenter: parent.verticalCenter
                        width: Style.iconSmall
                        height: Style.iconSmall
                        symbolName: entry.modelData.symbol
                        color: entryHover.hovered ? Style.textOnAccent : Style.textSecondary
                    }

                    Text {
                        x: Style.spacingS + Style.iconSmall + Style.spacingM
                        anchors.verticalCenter: parent.verticalCenter
                        text: entry.modelData.label
                        font: Style.callout
                        color: entryHover.hovered ? Style.textOnAccent : Style.textPrimary
                    }

                    HoverHandler {
                        id: entryHover
                    }

                    TapHandler {
                        onTapped: {
                            popup.close();
                            menu.sidebar.triggerContextAction(menu.row, entry.modelData.action);
                        }
                    }
                }
            }
        }
    }
}
