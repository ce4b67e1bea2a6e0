import QtQuick
import Kestrum.Style

// One permission: its title and what it is for on the left, its state on the right, and a note below
// when there is one.
Column {
    id: row

    property string title
    property string detail
    property string state
    property bool needsAction
    property string note

    spacing: Style.spacingXS

    Item {
        width: row.width
        height: Math.max(texts.implicitHeight, stateText.implicitHeight)

        Column {
            id: texts

            width: parent.width - stateText.implicitWidth - Style.spacingL
            spacing: Style.spacingXXS

            Text {
                text: row.title
                font: Style.body
                color: Style.textPrimary
            }

            Text {
                width: parent.width
                text: row.detail
                font: Style.footnote
                color: Style.textSecondary
                wrapMode: Text.Wrap
            }
        }

        Text {
            id: stateText

            objectName: "permissionState"
            anchors.right: parent.right
            anchors.top: parent.top
            text: row.state
            font: Style.calloutSemibold
            color: row.needsAction ? Style.warning : Style.textSecondary
        }
    }

    NoteLine {
        width: row.width
        text: row.note
        symbolName: row.note.length > 0 ? "exclamationmark.triangle" : ""
        ink: Style.warning
    }
}
