import QtQuick
import QtQuick.Layouts
import Kestrum.Style
import Kestrum.Gallery

Window {
    id: window

    property int page: GalleryCatalog.startPage

    visible: true
    title: "Kestrum UI gallery"
    color: Style.background

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        GalleryHeader {
            Layout.fillWidth: true
            page: window.page
            onPageChosen: index => window.page = index
        }

        // Only the page shown is made: the game art page starts its loads when it is opened.
        StackLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            currentIndex: window.page

            Loader {
                active: window.page === 0
                source: "PanelsPage.qml"
            }

            Loader {
                active: window.page === 1
                source: "StylePage.qml"
            }

            Loader {
                active: window.page === 2
                source: "IconsPage.qml"
            }

            Loader {
                active: window.page === 3
                source: "ArtPage.qml"
            }

            Loader {
                active: window.page === 4
                source: "ImagesPage.qml"
            }
        }
    }
}
