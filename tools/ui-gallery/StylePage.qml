pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Gallery

// The style: every named colour in both appearances, the type scale, and cards at rest and lifted.
GalleryPage {
    id: stylePage


    SectionTitle {
        text: "Named colours: light and dark"
    }

    Flow {
        width: parent.width
        spacing: Style.spacingM

        Repeater {
            model: GalleryCatalog.paletteRows

            delegate: Row {
                id: swatch

                required property var modelData

                width: 236
                spacing: Style.spacingS

                Repeater {
                    model: [swatch.modelData.light, swatch.modelData.dark]

                    delegate: Rectangle {
                        required property color modelData

                        width: 26
                        height: 26
                        radius: Style.radiusSmall
                        color: modelData
                        border.color: Style.separator
                        border.width: Style.hairline
                    }
                }

                Column {
                    anchors.verticalCenter: parent.verticalCenter

                    Text {
                        text: swatch.modelData.name
                        font: Style.callout
                        color: Style.textPrimary
                    }

                    Text {
                        text: String(swatch.modelData.light) + "  " + String(swatch.modelData.dark)
                        font: Style.caption
                        color: Style.textSecondary
                    }
                }
            }
        }
    }

    Row {
        spacing: Style.spacingXXL * 2

        Column {
            spacing: Style.spacingXS

            SectionTitle {
                text: "Type scale"
            }

            Repeater {
                model: GalleryCatalog.typeScale

                delegate: Row {
                    id: sample

                    required property var modelData

                    spacing: Style.spacingL

                    Text {
                        width: 120
                        anchors.baseline: specimen.baseline
                        text: sample.modelData.name
                        font: Style.caption
                        color: Style.textTertiary
                    }

                    Text {
                        id: specimen

                        text: "Baron taken at 24:35"
                        font: sample.modelData.font
                        color: Style.textPrimary
                    }
                }
            }

            Text {
                topPadding: Style.spacingM
                text: "Secondary text reads like this, tertiary below it."
                font: Style.body
                color: Style.textSecondary
            }

            Text {
                text: "Tertiary text: hints, counts, timestamps."
                font: Style.body
                color: Style.textTertiary
            }
        }

        Column {
            spacing: Style.spacingL

            SectionTitle {
                text: "Cards: at rest, lifted, hover me"
            }

            Row {
                spacing: Style.spacingXL

                SampleCard {
                    title: "At rest"
                    detail: "Hairline border"
                }

                SampleCard {
                    title: "Lifted"
                    detail: "As under the pointer"
                    lifted: true
                }

                SampleCard {
                    title: "Hover me"
                    detail: "Follows the pointer"
                }
            }

            SectionTitle {
                text: "Team and state inks"
            }

            Row {
                spacing: Style.spacingM

                Repeater {
                    model: [Style.teamBlue, Style.teamRed, Style.accent, Style.warning, Style.error, Style.success]

                    delegate: Rectangle {
                        required property color modelData

                        width: 44
                        height: 22
                        radius: Style.radiusSmall
                        color: modelData
                    }
                }
            }

            Row {
                spacing: Style.spacingM

                Rectangle {
                    width: 140
                    height: 28
                    radius: Style.radiusSmall
                    color: Style.teamBlueTint

                    Text {
                        anchors.centerIn: parent
                        text: "BLUE TEAM  12"
                        font: Style.captionSemibold
                        color: Style.teamBlue
                    }
                }

                Rectangle {
                    width: 140
                    height: 28
                    radius: Style.radiusSmall
                    color: Style.teamRedTint

                    Text {
                        anchors.centerIn: parent
                        text: "RED TEAM  9"
                        font: Style.captionSemibold
                        color: Style.teamRed
                    }
                }
            }
        }
    }
}
