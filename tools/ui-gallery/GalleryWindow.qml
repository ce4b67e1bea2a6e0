import QtQuick
import QtQuick.Layouts
import Kestrum.Style
import Kestrum.Gallery

Window {
    id: window

    required property GalleryCatalog catalog
    property int page: catalog.startPage

    visible: true
    title: "Kestrum UI gallery"
    color: Style.background

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        GalleryHeader {
            Layout.fillWidth: true
            catalog: window.catalog
            page: window.page
            onPageChosen: index => window.page = index
        }

        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: window.page

            StylePage {
                catalog: window.catalog
            }

            IconsPage {
                catalog: window.catalog
            }

            ArtPage {
                catalog: window.catalog
            }

            ImagesPage {
                catalog: window.catalog
            }
        }
    }
}
