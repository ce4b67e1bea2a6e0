import QtQuick
import Kestrum.Style
import Kestrum.Gallery

// Game art from the asset store: champion portraits, item and spell icons, each over its placeholder
// until it arrives. The page refreshes the store's version when it is made, as a panel does.
GalleryPage {
    id: imagesPage


    Component.onCompleted: DataDragonAssets.refreshVersion()

    SectionTitle {
        text: "Game art, version " + DataDragonAssets.currentVersion
    }

    Text {
        text: GalleryCatalog.artHostLine
        font: Style.footnote
        color: Style.textSecondary
    }

    ArtRow {
        width: parent.width
        title: "Champions (48 px)"
        kind: DataDragonPicture.Champion
        identifiers: GalleryCatalog.champions
        side: 48
    }

    ArtRow {
        width: parent.width
        title: "Items (32 px)"
        kind: DataDragonPicture.Item
        identifiers: GalleryCatalog.items
        side: 32
    }

    ArtRow {
        width: parent.width
        title: "Summoner spells (32 px)"
        kind: DataDragonPicture.Spell
        identifiers: GalleryCatalog.spells
        side: 32
    }

    ArtRow {
        width: parent.width
        title: "Missing art keeps its placeholder"
        kind: DataDragonPicture.Champion
        identifiers: [""]
        side: 48
    }
}
