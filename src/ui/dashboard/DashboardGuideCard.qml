pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Dashboard

// The guide's card: its title and close button, then each section of the controller's guide (made from
// the key map), a line per key or gesture. Scrolls when the window is too short for it.
KestrumCardModifier {
    id: guide

    required property DashboardController controller

    implicitHeight: header.height + sections.implicitHeight + 3 * Style.spacingL
    hoverEnabled: false
    // The content places itself, inset by the large spacing.
    padding: 0

    // Clicks on the card stay on it (the page behind closes the guide).
    MouseArea {
        anchors.fill: parent
    }

    Item {
        id: header

        x: Style.spacingL
        y: Style.spacingL
        width: parent.width - 2 * Style.spacingL
        height: 28

        Row {
            anchors.verticalCenter: parent.verticalCenter
            spacing: Style.spacingS

            LucideIcon {
                anchors.verticalCenter: parent.verticalCenter
                width: Style.iconMedium
                height: Style.iconMedium
                symbolName: guide.controller.sidebar.guideButtonSymbol
                color: Style.accent
            }

            Text {
                objectName: "guideTitle"
                anchors.verticalCenter: parent.verticalCenter
                text: guide.controller.guideTitle
                font: Style.title3
                color: Style.textPrimary
            }
        }

        Rectangle {
            objectName: "guideCloseButton"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: doneLabel.implicitWidth + 2 * Style.spacingL
            height: 26
            radius: 13
            color: closeHover.hovered ? Style.surfaceHovered : Style.surfaceSunken
            border.color: Style.border
            border.width: Style.hairline
            Accessible.role: Accessible.Button
            Accessible.name: doneLabel.text
            Accessible.onPressAction: guide.controller.isGuidePresented = false

            Text {
                id: doneLabel

                anchors.centerIn: parent
                text: guide.controller.guideDoneTitle
                font: Style.calloutSemibold
                color: Style.accent
            }

            HoverHandler {
                id: closeHover

                cursorShape: Qt.PointingHandCursor
            }

            MouseArea {
                anchors.fill: parent
                onClicked: guide.controller.isGuidePresented = false
            }
        }
    }

    Flickable {
        x: Style.spacingL
        y: header.y + header.height + Style.spacingL
        width: parent.width - 2 * Style.spacingL
        height: parent.height - y - Style.spacingL
        contentHeight: sections.implicitHeight
        clip: true
        boundsBehavior: Flickable.StopAtBounds

        Column {
            id: sections

            width: parent.width
            spacing: Style.spacingL

            Repeater {
                model: guide.controller.guideSections

                delegate: Column {
                    id: section

                    required property var modelData

                    objectName: "guideSection"
                    width: sections.width
                    spacing: Style.spacingXS

                    Text {
                        text: section.modelData.title
                        font: Style.captionSemibold
                        color: Style.textTertiary
                    }

                    Repeater {
                        model: section.modelData.rows

                        delegate: Row {
                            id: row

                            required property var modelData

                            objectName: "guideRow"
                            width: section.width
                            spacing: Style.spacingM

                            Text {
                                width: Math.round(row.width * 0.42)
                                text: row.modelData.keys
                                font: Style.calloutSemibold
                                color: Style.textPrimary
                                wrapMode: Text.Wrap
                            }

                            Text {
                                width: row.width - Math.round(row.width * 0.42) - row.spacing
                                text: row.modelData.effect
                                font: Style.callout
                                color: Style.textSecondary
                                wrapMode: Text.Wrap
                            }
                        }
                    }
                }
            }
        }
    }
}
