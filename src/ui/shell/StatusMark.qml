import QtQuick
import Kestrum.Style

// The recorder's status mark: the tray's own image of the status, drawn in the variant that reads on the
// panel's ground, or the warning symbol in the warning colour when the user must act.
Item {
    id: mark

    property string imageName
    property bool isSystemSymbol

    implicitWidth: 18
    implicitHeight: 18

    Image {
        anchors.fill: parent
        visible: !mark.isSystemSymbol
        source: mark.isSystemSymbol || mark.imageName.length === 0 ? "" : "qrc:/kestrum/tray/" + mark.imageName + (Style.dark ? "-dark" : "-light") + ".svg"
        sourceSize.width: 2 * mark.implicitWidth
        sourceSize.height: 2 * mark.implicitHeight
        smooth: true
    }

    LucideIcon {
        anchors.fill: parent
        visible: mark.isSystemSymbol
        symbolName: mark.isSystemSymbol ? mark.imageName : ""
        color: Style.warning
    }
}
