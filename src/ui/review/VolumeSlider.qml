import QtQuick
import QtQuick.Templates as T
import Kestrum.Style

// The volume's slider, lying or standing: the level 0...1 of the shared volume. Dragging or clicking sets
// the level through `moved`; the slider shows whatever the volume model holds.
T.Slider {
    id: slider

    property real length: 88

    from: 0
    to: 1
    stepSize: 0.01
    implicitWidth: slider.horizontal ? slider.length : 20
    implicitHeight: slider.horizontal ? 20 : slider.length

    background: Item {
        x: slider.leftPadding
        y: slider.topPadding
        width: slider.availableWidth
        height: slider.availableHeight

        Rectangle {
            anchors.centerIn: parent
            width: slider.horizontal ? parent.width : 4
            height: slider.horizontal ? 4 : parent.height
            radius: 2
            color: Style.separator

            Rectangle {
                x: 0
                y: slider.horizontal ? 0 : parent.height - height
                width: slider.horizontal ? slider.visualPosition * parent.width : parent.width
                height: slider.horizontal ? parent.height : (1 - slider.visualPosition) * parent.height
                radius: 2
                color: Style.accent
            }
        }
    }

    handle: Rectangle {
        x: slider.leftPadding + (slider.horizontal ? slider.visualPosition * (slider.availableWidth - width)
                                                   : (slider.availableWidth - width) / 2)
        y: slider.topPadding + (slider.horizontal ? (slider.availableHeight - height) / 2
                                                  : slider.visualPosition * (slider.availableHeight - height))
        implicitWidth: 14
        implicitHeight: 14
        radius: 7
        color: Style.surface
        border.color: slider.pressed ? Style.accent : Style.borderHovered
        border.width: Style.hairline
    }
}
