pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Gallery

// Every art name the system uses, drawn by CommunityDragonIcon at 16, 24 and 48 pixels.
GalleryPage {
    id: artPage


    SectionTitle {
        text: "Art: " + GalleryCatalog.artNames.length + " names, at 16, 24 and 48 px"
    }

    Flow {
        width: parent.width
        spacing: Style.spacingS

        Repeater {
            model: GalleryCatalog.artNames

            delegate: Rectangle {
                id: cell

                required property string modelData

                width: 236
                height: 64
                radius: Style.radiusMedium
                color: Style.surface
                border.color: Style.border
                border.width: Style.hairline

                Row {
                    anchors.verticalCenter: parent.verticalCenter
                    x: Style.spacingM
                    spacing: Style.spacingM

                    Repeater {
                        model: [16, 24, 48]

                        delegate: CommunityDragonIcon {
                            required property int modelData

                            anchors.verticalCenter: parent.verticalCenter
                            width: modelData
                            height: modelData
                            artName: cell.modelData
                        }
                    }

                    Text {
                        anchors.verticalCenter: parent.verticalCenter
                        width: 110
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
