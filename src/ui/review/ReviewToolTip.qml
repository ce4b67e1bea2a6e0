import QtQuick
import QtQuick.Templates as T
import Kestrum.Style

// A tip of the item it fills: shown while `shown` holds and there is text, after `delay`, centred above
// the item (below it with `below`), in the window's overlay so that nothing clips it.
Item {
    id: root

    property string text
    property bool shown
    property int delay: 450
    property bool below
    readonly property bool isOpen: tip.opened

    anchors.fill: parent

    T.ToolTip {
        id: tip

        parent: root
        visible: root.shown && root.text.length > 0
        delay: root.delay
        text: root.text
        x: (root.width - tip.width) / 2
        y: root.below ? root.height + Style.spacingXS : -tip.height - Style.spacingXS
        margins: Style.spacingXS
        padding: Style.spacingS
        leftPadding: Style.spacingM
        rightPadding: Style.spacingM
        implicitWidth: Math.min(tip.implicitContentWidth, 360) + tip.leftPadding + tip.rightPadding
        implicitHeight: tip.implicitContentHeight + tip.topPadding + tip.bottomPadding

        contentItem: Text {
            text: tip.text
            font: Style.footnote
            color: Style.textPrimary
            wrapMode: Text.Wrap
        }

        background: Rectangle {
            color: Style.surface
            border.color: Style.borderHovered
            border.width: Style.hairline
            radius: Style.radiusMedium
        }
    }
}
