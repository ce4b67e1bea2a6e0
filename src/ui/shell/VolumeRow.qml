import QtQuick
import QtQuick.Templates as T
import Kestrum.Style
import Kestrum.Shell

// A capture volume: its title and a slider over the stored gain (0 to 2.0 in steps of 0.05); moving it
// stores the gain, and the slider shows what the model holds.
Item {
    id: row

    required property SettingsSlider slider

    implicitHeight: 24
    opacity: row.enabled ? 1 : 0.45

    Text {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        text: row.slider.title
        font: Style.body
        color: Style.textPrimary
    }

    T.Slider {
        id: control

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        implicitWidth: 220
        implicitHeight: 20
        from: row.slider.minimum
        to: row.slider.maximum
        stepSize: row.slider.step
        snapMode: T.Slider.SnapAlways
        value: row.slider.value
        onMoved: row.slider.value = control.value

        background: Rectangle {
            x: control.leftPadding
            y: control.topPadding + (control.availableHeight - height) / 2
            width: control.availableWidth
            height: 4
            radius: 2
            color: Style.separator

            Rectangle {
                width: control.visualPosition * parent.width
                height: parent.height
                radius: 2
                color: Style.accent
            }
        }

        handle: Rectangle {
            x: control.leftPadding + control.visualPosition * (control.availableWidth - width)
            y: control.topPadding + (control.availableHeight - height) / 2
            implicitWidth: 16
            implicitHeight: 16
            radius: 8
            color: "white"
            border.color: control.pressed ? Style.accent : Style.borderHovered
            border.width: Style.hairline
        }
    }
}
