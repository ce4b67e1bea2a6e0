import QtQuick
import Kestrum.Style

// One item slot of a scoreboard row: the item's art, or a quiet frame over the panel while the slot is
// empty or its art has not come. (The placeholder lives in a file of unbound components: the picture's
// loader makes it in its own context.)
DataDragonImage {
    kind: DataDragonPicture.Item
    placeholder: emptySlot

    Component {
        id: emptySlot

        Rectangle {
            color: Style.surfaceHovered
            border.color: Style.border
            border.width: Style.hairline
            radius: Style.radiusSmall
        }
    }
}
