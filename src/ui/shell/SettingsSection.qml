import QtQuick
import Kestrum.Style

// One group of the settings form: its heading (none when empty) over a card holding its rows.
Column {
    id: section

    property string title
    default property alias rows: body.data

    spacing: Style.spacingS

    Text {
        visible: section.title.length > 0
        leftPadding: Style.spacingXS
        text: section.title
        font: Style.calloutSemibold
        color: Style.textSecondary
    }

    Rectangle {
        width: section.width
        height: body.implicitHeight + 2 * Style.spacingL
        radius: Style.radiusCard
        color: Style.surface
        border.color: Style.border
        border.width: Style.hairline

        Column {
            id: body

            x: Style.spacingL
            y: Style.spacingL
            width: parent.width - 2 * Style.spacingL
            spacing: Style.spacingL
        }
    }
}
