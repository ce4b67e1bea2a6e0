import QtQuick
import Kestrum.Style

// A card as a match card will use it: art, a title and a detail line.
KestrumCardModifier {
    id: sample

    required property string title
    required property string detail

    width: 200
    height: 72

    Row {
        anchors.verticalCenter: parent.verticalCenter
        spacing: Style.spacingL

        CommunityDragonIcon {
            width: Style.iconLarge + Style.spacingM
            height: width
            anchors.verticalCenter: parent.verticalCenter
            artName: "map_summoners_rift"
        }

        Column {
            anchors.verticalCenter: parent.verticalCenter

            Text {
                text: sample.title
                font: Style.headline
                color: Style.textPrimary
            }

            Text {
                text: sample.detail
                font: Style.footnote
                color: Style.textSecondary
            }
        }
    }
}
