pragma ComponentBehavior: Bound
import QtQuick
import Kestrum.Style
import Kestrum.Shell

// One number of the storage budget: its title, a short text field with its unit, and a stepper. Typing
// changes nothing; the text is committed on Return and when the field loses the focus, and the model
// clamps it into range. The field then shows the stored value again.
Item {
    id: row

    required property StorageLimitField field

    implicitHeight: 26

    Text {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        text: row.field.title
        font: Style.body
        color: Style.textPrimary
    }

    Row {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        spacing: Style.spacingS

        Rectangle {
            anchors.verticalCenter: parent.verticalCenter
            width: row.field.isUnlimited ? unlimitedText.implicitWidth + 2 * Style.spacingS
                                         : row.field.fieldWidth + 2 * Style.spacingS
            height: 24
            radius: Style.radiusSmall
            color: Style.surfaceSunken
            border.color: input.activeFocus ? Style.accent : Style.border
            border.width: Style.hairline

            TextInput {
                id: input

                objectName: "input"
                anchors.fill: parent
                anchors.leftMargin: Style.spacingS
                anchors.rightMargin: Style.spacingS
                visible: !row.field.isUnlimited
                verticalAlignment: TextInput.AlignVCenter
                horizontalAlignment: TextInput.AlignRight
                text: row.field.text
                font: Style.body
                color: Style.textPrimary
                selectByMouse: true
                clip: true
                onEditingFinished: row.field.commit(input.text)
            }

            Text {
                id: unlimitedText

                anchors.centerIn: parent
                visible: row.field.isUnlimited
                text: row.field.text
                font: Style.body
                color: Style.textSecondary
            }
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            visible: !row.field.isUnlimited
            text: row.field.unit
            font: Style.body
            color: Style.textSecondary
        }

        Column {
            anchors.verticalCenter: parent.verticalCenter
            enabled: !row.field.isUnlimited
            opacity: enabled ? 1 : 0.45
            Accessible.name: row.field.stepperLabel

            Repeater {
                model: 2

                delegate: Rectangle {
                    id: stepButton

                    required property int index

                    objectName: stepButton.index === 0 ? "stepUp" : "stepDown"
                    width: 20
                    height: 13
                    radius: Style.radiusSmall
                    color: stepHover.hovered ? Style.surfaceHovered : Style.surface
                    border.color: Style.border
                    border.width: Style.hairline

                    LucideIcon {
                        anchors.centerIn: parent
                        width: 11
                        height: 11
                        rotation: stepButton.index === 0 ? -90 : 90
                        symbolName: "chevron.right"
                        color: Style.textPrimary
                    }

                    HoverHandler {
                        id: stepHover
                    }

                    TapHandler {
                        onTapped: stepButton.index === 0 ? row.field.stepUp() : row.field.stepDown()
                    }
                }
            }
        }
    }

    // Once the user has typed, the text no longer follows the binding; a commit shows the stored value.
    Connections {
        target: row.field

        function onChanged() {
            input.text = row.field.text
        }
    }
}
