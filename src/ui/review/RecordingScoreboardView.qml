pragma ComponentBehavior: Bound

import QtQuick
import Kestrum.Style
import Kestrum.Review

// The ten players over the movie: the blue team on the left, the red on the right, rows paired by index
// (a shorter team leaves a gap), under the column titles.
KestrumCardModifier {
    id: board

    required property RecordingScoreboardModel model
    property real teamRowHeight: 44
    property real teamRowSpacing: 2
    property real kdaColumnWidth: 84
    property real rowHorizontalPadding: 10
    readonly property real creepScoreColumnWidth: 40
    readonly property real itemsColumnWidth: 7 * 22 + 6 * Style.spacingXXS
    readonly property real teamGap: Style.spacingXL

    hoverEnabled: false
    fill: Style.toastBackground
    padding: Style.spacingL
    implicitHeight: titles.height + Style.spacingS + teams.implicitHeight + 2 * board.padding

    Row {
        id: titles

        width: parent.width
        height: 18
        spacing: board.teamGap

        Repeater {
            model: [
                {"title": board.model.blueTeamTitle, "ink": Style.teamBlue},
                {"title": board.model.redTeamTitle, "ink": Style.teamRed}
            ]

            delegate: Item {
                id: side

                required property var modelData

                width: (titles.width - board.teamGap) / 2
                height: titles.height

                ScoreboardColumnHeader {
                    x: board.rowHorizontalPadding
                    width: side.width - x - kdaTitle.width - board.creepScoreColumnWidth - board.itemsColumnWidth
                           - board.rowHorizontalPadding - Style.spacingM
                    height: parent.height
                    title: side.modelData.title
                    ink: side.modelData.ink
                }

                ScoreboardColumnHeader {
                    id: kdaTitle

                    x: side.width - board.rowHorizontalPadding - board.itemsColumnWidth - Style.spacingM
                       - board.creepScoreColumnWidth - width
                    width: board.kdaColumnWidth
                    height: parent.height
                    alignment: Text.AlignHCenter
                    title: board.model.kdaTitle
                }

                ScoreboardColumnHeader {
                    x: kdaTitle.x + kdaTitle.width
                    width: board.creepScoreColumnWidth
                    height: parent.height
                    alignment: Text.AlignHCenter
                    title: board.model.creepScoreTitle
                }

                ScoreboardColumnHeader {
                    x: side.width - board.rowHorizontalPadding - board.itemsColumnWidth
                    width: board.itemsColumnWidth
                    height: parent.height
                    title: board.model.itemsTitle
                }
            }
        }
    }

    Row {
        id: teams

        anchors.top: titles.bottom
        anchors.topMargin: Style.spacingS
        width: parent.width
        spacing: board.teamGap

        Repeater {
            model: [
                {"rows": board.model.blueRows, "ink": Style.teamBlue, "tint": Style.teamBlueTint},
                {"rows": board.model.redRows, "ink": Style.teamRed, "tint": Style.teamRedTint}
            ]

            delegate: Column {
                id: team

                required property var modelData

                width: (teams.width - board.teamGap) / 2
                spacing: board.teamRowSpacing

                Repeater {
                    model: team.modelData.rows

                    delegate: ScoreboardPlayerRow {
                        width: team.width
                        height: board.teamRowHeight
                        scoreboard: board.model
                        ink: team.modelData.ink
                        tint: team.modelData.tint
                        kdaColumnWidth: board.kdaColumnWidth
                        creepScoreColumnWidth: board.creepScoreColumnWidth
                        rowHorizontalPadding: board.rowHorizontalPadding
                    }
                }
            }
        }
    }
}
