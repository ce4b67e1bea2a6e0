import QtQuick
import Kestrum.Style

// Game art from the asset store (a champion portrait, an item or a summoner spell icon), stretched to
// the frame the caller gives, over its placeholder until the image has arrived.
Item {
    id: root

    property alias kind: picture.kind
    property alias identifier: picture.identifier
    // Empty: the store's current version.
    property alias version: picture.version
    readonly property alias hasImage: picture.hasImage
    property Component placeholder: plainPlaceholder

    implicitWidth: Style.iconLarge
    implicitHeight: Style.iconLarge

    Loader {
        anchors.fill: parent
        active: !picture.hasImage
        sourceComponent: root.placeholder
    }

    DataDragonPicture {
        id: picture

        anchors.fill: parent
    }

    Component {
        id: plainPlaceholder

        Rectangle {
            color: Style.surfaceSunken
            border.color: Style.border
            border.width: Style.hairline
            radius: Style.radiusSmall
        }
    }
}
