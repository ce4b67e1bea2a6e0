pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style

// One kind of game art as a row of tiles with their identifiers.
Column {
    id: artRow

    required property string title
    required property int kind
    required property var identifiers
    required property int side

    spacing: Style.spacingS

    SectionTitle {
        text: artRow.title
    }

    Flow {
        width: artRow.width
        spacing: Style.spacingL

        Repeater {
            model: artRow.identifiers

            // Cells of one width, so the tiles line up whatever their names' lengths.
            delegate: Column {
                id: tile

                required property string modelData

                width: artRow.side + 2 * Style.spacingXXL
                spacing: Style.spacingXS

                DataDragonImage {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: artRow.side
                    height: artRow.side
                    kind: artRow.kind
                    identifier: tile.modelData
                }

                Text {
                    width: tile.width
                    horizontalAlignment: Text.AlignHCenter
                    elide: Text.ElideRight
                    text: tile.modelData === "" ? "(none)" : tile.modelData
                    font: Style.caption
                    color: Style.textTertiary
                }
            }
        }
    }
}
