import QtQuick
import Kestrum.Style

// A row of the settings form: its title on the left, its control on the right.
Item {
    id: row

    property string title
    default property alias control: trailing.data

    implicitHeight: Math.max(label.implicitHeight, trailing.childrenRect.height, 24)

    Text {
        id: label

        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        text: row.title
        font: Style.body
        color: Style.textPrimary
    }

    Item {
        id: trailing

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: childrenRect.width
        height: childrenRect.height
    }
}
