pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review

// "Timeline filters": the event classes and the players whose markers show, each row toggling its
// member, grouped under "Events" and "Players", and "Reset Filters" back to the defaults.
Column {
    id: panel

    required property GameTimelineModel model

    width: 200
    spacing: Style.spacingXXS

    Text {
        text: panel.model.filterTitle
        font: Style.headline
        color: Style.textPrimary
        leftPadding: Style.spacingS
        bottomPadding: Style.spacingXS
    }

    Repeater {
        model: panel.model.filters

        delegate: Column {
            id: filterRow

            required property int index
            required property string group
            required property string label
            required property bool isChecked
            // A group's title stands over its first row.
            readonly property bool opensGroup: filterRow.index === 0
                                               || panel.model.filters.value(filterRow.index - 1, "group") !== filterRow.group

            width: panel.width

            Text {
                visible: filterRow.opensGroup
                text: filterRow.group
                font: Style.captionSemibold
                color: Style.textSecondary
                leftPadding: Style.spacingS
                topPadding: Style.spacingS
                bottomPadding: Style.spacingXXS
            }

            PanelRow {
                objectName: "filterRow" + filterRow.index
                width: parent.width
                text: filterRow.label
                checked: filterRow.isChecked
                onClicked: panel.model.toggleFilter(filterRow.index)
            }
        }
    }

    Rectangle {
        width: panel.width
        height: Style.hairline
        color: Style.separator
    }

    PanelRow {
        objectName: "resetFilters"
        width: panel.width
        text: panel.model.resetFiltersTitle
        enabled: panel.model.canResetFilters
        opacity: enabled ? 1 : 0.45
        onClicked: panel.model.resetFilters()
    }
}
