pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Gallery

// Every symbol name the system uses, drawn by LucideIcon at 16 and 24 pixels, in the primary and the
// accent colour.
GalleryPage {
    id: iconsPage


    SectionTitle {
        text: "Symbols: " + GalleryCatalog.symbolNames.length + " names, at 16 and 24 px"
    }

    Flow {
        width: parent.width
        spacing: Style.spacingS

        Repeater {
            model: GalleryCatalog.symbolNames

            delegate: Rectangle {
                id: cell

                required property string modelData

                width: 236
                height: 44
                radius: Style.radiusMedium
                color: Style.surface
                border.color: Style.border
                border.width: Style.hairline

                Row {
                    anchors.verticalCenter: parent.verticalCenter
                    x: Style.spacingM
                    spacing: Style.spacingM

                    LucideIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        width: Style.iconMedium
                        height: Style.iconMedium
                        symbolName: cell.modelData
                    }

                    LucideIcon {
                        anchors.verticalCenter: parent.verticalCenter
                        width: Style.iconLarge
                        height: Style.iconLarge
                        symbolName: cell.modelData
                        color: Style.accent
                    }

                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 170
                        elide: Text.ElideRight
                        text: cell.modelData
                        font: Style.footnote
                        color: Style.textSecondary
                    }
                }
            }
        }
    }
}
