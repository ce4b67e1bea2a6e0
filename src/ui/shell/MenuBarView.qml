import QtQuick
import Kestrum.Style
import Kestrum.Shell

// The tray's panel: "Kestrum" with the recorder's status word and mark, the storage warning, the
// permission line, "Open Dashboard", the League Share controls (its status, start or stop, pause or
// resume; disabled, with why, when it cannot run; "About Kestrum Share" shows what it is for), then
// "Settings" and "Quit". Everything shown and every command comes from the model.
Rectangle {
    id: view

    required property MenuBarModel model

    implicitWidth: view.model.width
    implicitHeight: column.implicitHeight + 2 * view.model.padding
    color: Style.background
    border.color: Style.border
    border.width: Style.hairline
    radius: Style.radiusMedium

    Component.onCompleted: view.model.appeared()

    Column {
        id: column

        x: view.model.padding
        y: view.model.padding
        width: view.width - 2 * view.model.padding
        spacing: Style.spacingL

        Item {
            width: parent.width
            height: Math.max(title.implicitHeight, statusMark.height)

            Text {
                id: title

                anchors.left: parent.left
                anchors.verticalCenter: parent.verticalCenter
                text: view.model.title
                font: Style.headline
                color: Style.textPrimary
            }

            StatusMark {
                id: statusMark

                objectName: "statusMark"
                anchors.right: parent.right
                anchors.verticalCenter: parent.verticalCenter
                imageName: view.model.statusImageName
                isSystemSymbol: view.model.statusImageIsSystemSymbol
            }

            Text {
                objectName: "statusWord"
                anchors.right: statusMark.left
                anchors.rightMargin: Style.spacingS
                anchors.verticalCenter: parent.verticalCenter
                text: view.model.statusWord
                font: Style.callout
                color: view.model.statusImageIsSystemSymbol ? Style.warning : Style.textSecondary
            }
        }

        NoteLine {
            objectName: "storageWarning"
            width: parent.width
            visible: view.model.showsStorageWarning
            text: view.model.storageWarning
            symbolName: view.model.storageWarningSymbol
            ink: Style.warning
        }

        NoteLine {
            objectName: "permissionLine"
            width: parent.width
            visible: view.model.showsPermissionLine
            text: view.model.permissionLine
            ink: Style.warning
        }

        ShellButton {
            objectName: "openDashboard"
            width: parent.width
            prominent: true
            text: view.model.openDashboardTitle
            symbolName: "play.rectangle.on.rectangle"
            onClicked: view.model.openDashboard()
        }

        Rectangle {
            width: parent.width
            height: shareColumn.implicitHeight + 2 * Style.spacingM
            radius: Style.radiusMedium
            color: Style.surfaceSunken

            Column {
                id: shareColumn

                x: Style.spacingM
                y: Style.spacingM
                width: parent.width - 2 * Style.spacingM
                spacing: Style.spacingS

                Item {
                    width: parent.width
                    height: Math.max(shareHeader.implicitHeight, aboutShare.height)

                    Row {
                        id: shareHeader

                        anchors.verticalCenter: parent.verticalCenter
                        spacing: Style.spacingXS

                        LucideIcon {
                            anchors.verticalCenter: parent.verticalCenter
                            width: Style.iconMedium
                            height: Style.iconMedium
                            symbolName: view.model.aboutShareSymbol
                            color: Style.textSecondary
                        }

                        Text {
                            anchors.verticalCenter: parent.verticalCenter
                            text: view.model.aboutShareHeader
                            font: Style.calloutSemibold
                            color: Style.textSecondary
                        }
                    }

                    // "About Kestrum Share": shows or hides the share's explanation under this line.
                    LucideIcon {
                        id: aboutShare

                        objectName: "aboutShare"
                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        width: Style.iconMedium
                        height: Style.iconMedium
                        symbolName: "questionmark.circle"
                        color: aboutHover.hovered || view.model.isShareInformationShown ? Style.accent
                                                                                         : Style.textTertiary
                        Accessible.role: Accessible.Button
                        Accessible.name: view.model.aboutShareTitle
                        Accessible.onPressAction: view.model.isShareInformationShown = !view.model.isShareInformationShown

                        HoverHandler {
                            id: aboutHover

                            cursorShape: Qt.PointingHandCursor
                        }

                        TapHandler {
                            margin: Style.spacingXS
                            onTapped: view.model.isShareInformationShown = !view.model.isShareInformationShown
                        }
                    }
                }

                NoteLine {
                    objectName: "aboutShareText"
                    width: parent.width
                    visible: view.model.isShareInformationShown
                    text: view.model.aboutShareText
                    ink: Style.textTertiary
                }

                NoteLine {
                    objectName: "shareStatus"
                    width: parent.width
                    visible: view.model.showsShareStatus
                    text: view.model.shareStatusTitle
                    symbolName: view.model.shareStatusSymbol
                }

                ShellButton {
                    objectName: "startShare"
                    width: parent.width
                    enabled: view.model.isLeagueShareAvailable
                    text: view.model.startShareTitle
                    onClicked: view.model.toggleShare()
                }

                ShellButton {
                    objectName: "pauseShare"
                    width: parent.width
                    visible: view.model.showsPauseShare
                    text: view.model.pauseShareTitle
                    symbolName: view.model.pauseShareSymbol
                    onClicked: view.model.togglePauseShare()
                }

                NoteLine {
                    objectName: "shareNote"
                    width: parent.width
                    visible: text.length > 0
                    text: view.model.shareNote
                }
            }
        }

        Row {
            width: parent.width
            spacing: Style.spacingM

            ShellButton {
                objectName: "settings"
                width: (parent.width - parent.spacing) / 2
                text: view.model.settingsTitle
                onClicked: view.model.openSettings()
            }

            ShellButton {
                objectName: "quit"
                width: (parent.width - parent.spacing) / 2
                text: view.model.quitTitle
                onClicked: view.model.quit()
            }
        }
    }
}
