import QtQuick
import Kestrum.Style

// A scrolling page of the gallery; its children stack in a column with the page's margins.
Flickable {
    id: page

    default property alias content: column.data

    contentWidth: width
    contentHeight: column.implicitHeight + 2 * Style.spacingXL
    clip: true
    boundsBehavior: Flickable.StopAtBounds

    Column {
        id: column

        x: Style.spacingXL
        y: Style.spacingXL
        width: page.width - 2 * Style.spacingXL
        spacing: Style.spacingS
    }
}
