import QtQuick
import Kestrum.Style
import Kestrum.Review
import Kestrum.Dashboard

// "Couldn’t Complete File Action": the failed file action's message over a dimmed window, with the
// button that closes it.
Rectangle {
    id: alert

    required property DashboardController controller

    objectName: "fileActionAlert"
    color: Qt.rgba(0, 0, 0, 0.35)
    visible: alert.controller.isFileActionAlertPresented

    // The alert is modal: nothing under it takes the pointer.
    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.AllButtons
        hoverEnabled: true
    }

    KestrumCardModifier {
        anchors.centerIn: parent
        width: 360
        height: column.implicitHeight + 2 * padding
        hoverEnabled: false

        Column {
            id: column

            width: parent.width
            spacing: Style.spacingM

            LucideIcon {
                anchors.horizontalCenter: parent.horizontalCenter
                width: 32
                height: 32
                symbolName: "exclamationmark.triangle"
                color: Style.warning
            }

            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: alert.controller.fileActionAlertTitle
                font: Style.headline
                color: Style.textPrimary
            }

            Text {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.WordWrap
                text: alert.controller.fileActionAlertMessage
                font: Style.callout
                color: Style.textSecondary
            }

            TimelineControlButton {
                objectName: "fileActionAlertButton"
                anchors.horizontalCenter: parent.horizontalCenter
                prominent: true
                text: alert.controller.fileActionAlertButton
                onClicked: alert.controller.dismissFileActionAlert()
            }
        }
    }
}
