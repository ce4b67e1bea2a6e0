pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import Kestrum.Style
import Kestrum.Dashboard

// The filters' pop-up under its button: the choices by group (mode, lane, champion), each a row with a
// check when chosen, and a row that clears them all. It stays open while the sidebar model says so. The
// panel covers its button; the pop-up opens under it, aligned to its right edge.
Item {
    id: panel

    required property DashboardSidebarModel sidebar
    readonly property alias popup: popup

    T.Popup {
        id: popup

        objectName: "sidebarFilterPanel"
        x: panel.width - popup.width
        y: panel.height + Style.spacingXS
        visible: panel.sidebar.isRecordingFiltersPresented
        onClosed: panel.sidebar.isRecordingFiltersPresented = false
        padding: Style.spacingS
        implicitWidth: 240
        implicitHeight: Math.min(420, choices.contentHeight + clearRow.height + 2 * popup.padding)
        closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent

        background: KestrumCardModifier {
            hoverEnabled: false
            padding: 0
        }

        Column {
            width: popup.availableWidth

            ListView {
                id: choices

                width: parent.width
                height: popup.implicitHeight - clearRow.height - 2 * popup.padding
                clip: true
                model: panel.sidebar.filterChoices
                boundsBehavior: Flickable.StopAtBounds
                section.property: "group"
                // The first choice of each group carries the group's title above it.
                delegate: Item {
                    id: choice

                    required property int index
                    required property string group
                    required property string label
                    required property bool isSelected
                    readonly property bool startsGroup: choice.ListView.section !== choice.ListView.previousSection

                    width: choices.width
                    height: row.height + (choice.startsGroup ? groupTitle.height : 0)

                    Text {
                        id: groupTitle

                        visible: choice.startsGroup
                        width: parent.width
                        height: 24
                        verticalAlignment: Text.AlignBottom
                        leftPadding: Style.spacingS
                        bottomPadding: Style.spacingXXS
                        text: choice.group
                        font: Style.captionSemibold
                        color: Style.textTertiary
                    }

                    Rectangle {
                        id: row

                        y: choice.startsGroup ? groupTitle.height : 0
                        width: parent.width
                        height: 26
                        radius: Style.radiusSmall
                        color: choiceHover.hovered ? Style.surfaceHovered : "transparent"

                    LucideIcon {
                        x: Style.spacingS
                        anchors.verticalCenter: parent.verticalCenter
                        width: Style.iconSmall
                        height: Style.iconSmall
                        visible: choice.isSelected
                        symbolName: "checkmark"
                        color: Style.accent
                    }

                    Text {
                        x: Style.spacingS + Style.iconSmall + Style.spacingS
                        anchors.verticalCenter: parent.verticalCenter
                        width: parent.width - x - Style.spacingS
                        text: choice.label
                        font: Style.callout
                        color: Style.textPrimary
                        elide: Text.ElideRight
                    }

                    HoverHandler {
                        id: choiceHover
                    }

                    TapHandler {
                        onTapped: panel.sidebar.chooseFilter(choice.index)
                    }
                    }
                }
            }

            Rectangle {
                id: clearRow

                width: parent.width
                height: 30
                radius: Style.radiusSmall
                color: clearHover.hovered && panel.sidebar.hasActiveFilters ? Style.surfaceHovered : "transparent"

                Rectangle {
                    width: parent.width
                    height: Style.hairline
                    color: Style.separator
                }

                Text {
                    x: Style.spacingS
                    anchors.verticalCenter: parent.verticalCenter
                    text: qsTr("Clear Filters")
                    font: Style.callout
                    color: panel.sidebar.hasActiveFilters ? Style.accent : Style.textTertiary
                }

                HoverHandler {
                    id: clearHover
                }

                TapHandler {
                    enabled: panel.sidebar.hasActiveFilters
                    onTapped: panel.sidebar.clearFilters()
                }
            }
        }
    }
}
