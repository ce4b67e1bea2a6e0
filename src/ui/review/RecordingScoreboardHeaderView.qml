import QtQuick
import Kestrum.Style
import Kestrum.Review

// The scoreboard's header over the movie: the game clock between the two teams' kill totals and
// objectives, and the timers of the next dragon and the next big objective.
KestrumCardModifier {
    id: header

    required property RecordingScoreboardModel model

    hoverEnabled: false
    fill: Style.toastBackground
    padding: Style.spacingL
    implicitHeight: 64 + 2 * header.padding

    ScoreboardTeamSummary {
        anchors.left: parent.left
        anchors.verticalCenter: parent.verticalCenter
        team: header.model.blueTeam
        ink: Style.teamBlue
        showsObjectives: header.model.showsObjectives
    }

    Column {
        anchors.centerIn: parent
        spacing: Style.spacingXXS

        Text {
            objectName: "gameClock"
            anchors.horizontalCenter: parent.horizontalCenter
            text: header.model.clockText
            font: Style.title2
            color: Style.textPrimary
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: header.model.showsObjectives
            spacing: Style.spacingL

            ScoreboardObjectiveTimer {
                artName: header.model.nextDragonArtName
                text: header.model.nextDragonText
                helpText: header.model.nextDragonHelp
                artSize: header.model.timerArtSize
                artSpacing: header.model.timerArtSpacing
            }

            ScoreboardObjectiveTimer {
                artName: header.model.nextObjectiveArtName
                text: header.model.nextObjectiveText
                helpText: header.model.nextObjectiveHelp
                artSize: header.model.timerArtSize
                artSpacing: header.model.timerArtSpacing
            }
        }
    }

    ScoreboardTeamSummary {
        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        team: header.model.redTeam
        ink: Style.teamRed
        mirrored: true
        showsObjectives: header.model.showsObjectives
    }
}
