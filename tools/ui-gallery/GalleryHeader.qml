pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Kestrum.Style
import Kestrum.Gallery

// The gallery's bar: its name, the page tabs, and what it shows (document, panels, art host).
Rectangle {
    id: header

    required property int page
    signal pageChosen(int index)

    implicitHeight: row.implicitHeight + 2 * Style.spacingL
    color: Style.surface

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: Style.spacingXL
        anchors.rightMargin: Style.spacingXL
        spacing: Style.spacingXL

        Text {
            text: "Kestrum UI gallery"
            font: Style.title3
            color: Style.textPrimary
        }

        Row {
            spacing: Style.spacingXS

            Repeater {
                model: ["Review panels", "Style", "Icons", "Art", "Game art"]

                delegate: Rectangle {
                    id: tab

                    required property string modelData
                    required property int index
                    readonly property bool chosen: tab.index === header.page

                    width: label.implicitWidth + 2 * Style.spacingL
                    height: label.implicitHeight + 2 * Style.spacingS
                    radius: Style.radiusMedium
                    color: tab.chosen ? Style.accent : (tabHover.hovered ? Style.surfaceHovered : Style.surfaceSunken)

                    Text {
                        id: label

                        anchors.centerIn: parent
                        text: tab.modelData
                        font: Style.calloutSemibold
                        color: tab.chosen ? Style.textOnAccent : Style.textPrimary
                    }

                    HoverHandler {
                        id: tabHover
                    }

                    TapHandler {
                        onTapped: header.pageChosen(tab.index)
                    }
                }
            }
        }

        Item {
            Layout.fillWidth: true
        }

        Column {
            Layout.alignment: Qt.AlignVCenter

            Text {
                anchors.right: parent.right
                text: GalleryCatalog.sourceLine
                font: Style.footnote
                color: Style.textSecondary
            }

            Text {
                anchors.right: parent.right
                text: GalleryCatalog.panelLine
                font: Style.footnote
                color: Style.textTertiary
            }
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: Style.hairline
        color: Style.separator
    }
}
