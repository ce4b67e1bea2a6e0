pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review

// The speed pop-up: the nine rates, one row each, the chosen one checked; a click chooses a rate.
Column {
    id: panel

    required property GameTimelineModel model

    width: 96

    Repeater {
        model: panel.model.playbackRates

        delegate: PanelRow {
            required property int index
            required property real rate
            required property string label
            required property bool isSelected

            objectName: "rateRow" + index
            width: panel.width
            height: panel.model.playbackRateRowHeight
            text: label
            checked: isSelected
            emphasised: isSelected
            onClicked: panel.model.selectPlaybackRate(rate)
        }
    }
}
