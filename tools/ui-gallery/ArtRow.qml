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

            delegate: Column {
                id: tile

                required property string modelData

                spacing: Style.spacingXS

                DataDragonImage {
                    width: artRow.side
                    height: artRow.side
                    kind: artRow.kind
                    identifier: tile.modelData
                }

                Text {
                    width: Math.max(artRow.side, implicitWidth)
                    text: tile.modelData === "" ? "(none)" : tile.modelData
                    font: Style.caption
                    color: Style.textTertiary
                }
            }
        }
    }
}
