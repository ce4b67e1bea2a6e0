import QtQuick
import Kestrum.Style
import Kestrum.Shell

// The settings window's form, one section after the other in the model's order, each control bound to its
// stored key through the model. The form scrolls when the window is shorter than it, and goes back to
// its top, with no field holding the focus, each time the window opens.
Rectangle {
    id: view

    required property SettingsModel model

    color: Style.background
    focus: true

    Flickable {
        id: flick

        objectName: "settingsScroll"
        anchors.fill: parent
        contentWidth: width
        contentHeight: form.implicitHeight + 2 * Style.spacingXXL
        boundsBehavior: Flickable.StopAtBounds
        clip: true

        Column {
            id: form

            x: Style.spacingXXL
            y: Style.spacingXXL
            width: flick.width - 2 * Style.spacingXXL
            spacing: Style.spacingXL

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[0]

                SettingsRow {
                    width: parent.width
                    title: view.model.theme.title

                    SegmentedPicker {
                        objectName: "themePicker"
                        choice: view.model.theme
                    }
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[1]

                PermissionRow {
                    objectName: "screenPermission"
                    width: parent.width
                    title: view.model.permissions.screenTitle
                    detail: view.model.permissions.screenDetail
                    state: view.model.permissions.screenState
                    needsAction: !view.model.permissions.hasScreenAccess
                    note: view.model.permissions.screenNote
                }

                PermissionRow {
                    objectName: "microphonePermission"
                    width: parent.width
                    title: view.model.permissions.microphoneTitle
                    detail: view.model.permissions.microphoneDetail
                    state: view.model.permissions.microphoneState
                    note: view.model.permissions.microphoneStateNote
                }

                Row {
                    spacing: Style.spacingS
                    visible: view.model.permissions.showsOpenSystemSettings
                             || view.model.permissions.showsMicrophoneRequest

                    ShellButton {
                        visible: view.model.permissions.showsOpenSystemSettings
                        text: view.model.permissions.openSystemSettingsTitle
                        onClicked: view.model.permissions.openSystemSettings()
                    }

                    ShellButton {
                        visible: view.model.permissions.showsMicrophoneRequest
                        text: view.model.permissions.microphoneRequestTitle
                        onClicked: view.model.permissions.requestMicrophoneAccess()
                    }
                }

                NoteLine {
                    width: parent.width
                    text: view.model.permissions.settingsError
                    ink: Style.warning
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[2]

                SettingsRow {
                    width: parent.width
                    title: view.model.videoResolution.title

                    SegmentedPicker {
                        choice: view.model.videoResolution
                    }
                }

                SettingsRow {
                    width: parent.width
                    title: view.model.videoFrameRate.title

                    SegmentedPicker {
                        choice: view.model.videoFrameRate
                    }
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[3]

                SettingsRow {
                    width: parent.width
                    title: view.model.shareResolution.title

                    SegmentedPicker {
                        choice: view.model.shareResolution
                    }
                }

                SettingsRow {
                    width: parent.width
                    title: view.model.shareFrameRate.title

                    SegmentedPicker {
                        choice: view.model.shareFrameRate
                    }
                }

                SettingsSwitch {
                    width: parent.width
                    title: view.model.shareIncludesAudio.title
                    isOn: view.model.shareIncludesAudio.isOn
                    onToggled: on => view.model.shareIncludesAudio.isOn = on
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[4]

                SettingsSwitch {
                    objectName: "recordSystemAudio"
                    width: parent.width
                    title: view.model.recordSystemAudio.title
                    isOn: view.model.recordSystemAudio.isOn
                    onToggled: on => view.model.recordSystemAudio.isOn = on
                }

                VolumeRow {
                    objectName: "systemAudioVolume"
                    width: parent.width
                    slider: view.model.systemAudioVolume
                }

                SettingsSwitch {
                    objectName: "recordMicrophone"
                    width: parent.width
                    title: view.model.recordMicrophone.title
                    isOn: view.model.recordMicrophone.isOn
                    onToggled: on => view.model.recordMicrophone.isOn = on
                }

                NoteLine {
                    objectName: "microphoneNote"
                    width: parent.width
                    text: view.model.permissions.microphoneNote
                }

                VolumeRow {
                    width: parent.width
                    slider: view.model.microphoneVolume
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[5]

                Item {
                    width: parent.width
                    height: Math.max(folderPath.implicitHeight, folderButtons.implicitHeight)

                    Text {
                        id: folderPath

                        objectName: "folderPath"
                        anchors.left: parent.left
                        anchors.right: folderButtons.left
                        anchors.rightMargin: Style.spacingM
                        anchors.verticalCenter: parent.verticalCenter
                        text: view.model.folder.path
                        font: Style.body
                        color: Style.textPrimary
                        elide: Text.ElideMiddle
                    }

                    Row {
                        id: folderButtons

                        anchors.right: parent.right
                        anchors.verticalCenter: parent.verticalCenter
                        spacing: Style.spacingS

                        ShellButton {
                            objectName: "openFolder"
                            text: view.model.folder.openFolderTitle
                            symbolName: "folder"
                            onClicked: view.model.folder.openFolder()
                        }

                        ShellButton {
                            objectName: "chooseFolder"
                            text: view.model.folder.chooseFolderTitle
                            onClicked: view.model.folder.chooseFolder()
                        }
                    }
                }

                NoteLine {
                    width: parent.width
                    visible: !view.model.folder.isUsable
                    text: view.model.folder.unavailableText
                    symbolName: view.model.folder.unavailableSymbol
                    ink: Style.warning
                }

                NoteLine {
                    width: parent.width
                    text: view.model.folder.openFolderError
                    ink: Style.warning
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[6]

                SettingsSwitch {
                    objectName: "storageLimit"
                    width: parent.width
                    title: view.model.storage.limitEnabled.title
                    isOn: view.model.storage.limitEnabled.isOn
                    onToggled: on => view.model.storage.limitEnabled.isOn = on
                }

                StorageLimitInput {
                    objectName: "maximumStorage"
                    width: parent.width
                    field: view.model.storage.maximum
                }

                StorageLimitInput {
                    objectName: "warningPercentage"
                    width: parent.width
                    field: view.model.storage.warningPercentage
                }

                Column {
                    width: parent.width
                    visible: view.model.storage.hasUsage
                    spacing: Style.spacingXS

                    Text {
                        objectName: "storageUseLine"
                        text: view.model.storage.useLine
                        font: Style.callout
                        color: Style.textPrimary
                    }

                    Rectangle {
                        width: parent.width
                        height: 6
                        radius: 3
                        color: Style.separator

                        Rectangle {
                            width: Math.min(1, view.model.storage.usedFraction) * parent.width
                            height: parent.height
                            radius: 3
                            color: view.model.storage.warning.length > 0 ? Style.warning : Style.accent
                        }
                    }

                    NoteLine {
                        objectName: "storageWarning"
                        width: parent.width
                        text: view.model.storage.warning
                        symbolName: view.model.storage.warningSymbol
                        ink: Style.warning
                    }
                }

                NoteLine {
                    width: parent.width
                    text: view.model.storage.note
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[7]

                SettingsSwitch {
                    objectName: "opensAtLogin"
                    width: parent.width
                    title: view.model.startup.toggleTitle
                    isOn: view.model.startup.opensAtLogin
                    onToggled: on => view.model.startup.opensAtLogin = on
                }

                NoteLine {
                    width: parent.width
                    text: view.model.startup.error
                    ink: Style.warning
                }
            }

            SettingsSection {
                width: parent.width
                title: view.model.sectionTitles[8]

                SettingsRow {
                    width: parent.width
                    title: view.model.versionTitle

                    Text {
                        objectName: "version"
                        text: view.model.version
                        font: Style.body
                        color: Style.textSecondary
                    }
                }

                Text {
                    width: parent.width
                    text: view.model.notice
                    font: Style.footnote
                    color: Style.textSecondary
                    wrapMode: Text.Wrap
                }

                Text {
                    objectName: "policiesLink"
                    text: view.model.linkTitle
                    font: Style.callout
                    color: Style.accent

                    HoverHandler {
                        cursorShape: Qt.PointingHandCursor
                    }

                    TapHandler {
                        onTapped: Qt.openUrlExternally(view.model.linkUrl)
                    }
                }
            }
        }
    }

    Rectangle {
        objectName: "scrollIndicator"
        anchors.right: parent.right
        anchors.rightMargin: 3
        y: flick.visibleArea.yPosition * flick.height
        width: 5
        height: flick.visibleArea.heightRatio * flick.height
        radius: 2.5
        visible: flick.contentHeight > flick.height
        color: Style.textTertiary
        opacity: 0.6
    }

    Connections {
        target: view.model

        function onScrollToTopRequested() {
            flick.contentY = 0
            view.forceActiveFocus()
        }
    }
}
