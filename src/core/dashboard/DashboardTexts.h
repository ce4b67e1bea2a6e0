#pragma once

#include "core/dashboard/DashboardToast.h"

#include <QString>
#include <QStringList>

namespace kestrum {

// The review window's own texts and symbol names that depend on state.
namespace DashboardTexts {

// The toasts of the playback keys.
PlaybackFeedback playing();
PlaybackFeedback paused();
// "Back <n> seconds" with "gobackward.<n>" for a negative step, else "Forward <n> seconds" with
// "goforward.<n>"; n is the magnitude rounded to the nearest integer.
PlaybackFeedback skipped(double seconds);
// "Speed " and the rate as "%g" and "×", with "speedometer".
PlaybackFeedback speed(double rate);
// "Volume <n>%", n the volume times 100 rounded; "speaker.slash.fill" at 0, else "speaker.wave.2.fill".
PlaybackFeedback volume(double volume);
PlaybackFeedback muted(bool isMuted);
// The scoreboard's copy of a Riot ID.
PlaybackFeedback riotIdCopied();

// With no selection.
inline const QString kNoSelectionTitle = QStringLiteral("No Match Selected");
inline const QString kNoSelectionSymbol = QStringLiteral("play.rectangle.on.rectangle");
inline const QString kNoSelectionMessage =
    QStringLiteral("Select a recorded game from the sidebar to start reviewing your gameplay.");
// Over the thumbnail while the movie loads.
inline const QString kLoadingVideo = QStringLiteral("Loading Video...");
// In place of the player when the movie cannot be opened, and on its card.
inline const QString kDamagedTitle = QStringLiteral("This Recording Can’t Be Played");
// The message says the events and scoreboard are shown only when the recording's document was read and
// they are.
QString damagedMessage(bool showsDocument);
inline const QString kDamagedSymbol = QStringLiteral("exclamationmark.triangle");
inline const QString kDamagedCardText = QStringLiteral("Movie can’t be opened");

// The alert of failed file actions: its title, its one button, and its message when none was given.
inline const QString kFileActionAlertTitle = QStringLiteral("Couldn’t Complete File Action");
inline const QString kFileActionAlertButton = QStringLiteral("OK");
inline const QString kUnknownError = QStringLiteral("Unknown error");
// "Some recordings could not be moved to Trash:", two line feeds, the lines joined by one.
QString trashFailure(const QStringList& lines);
// "The recordings folder could not be refreshed:", two line feeds, the scan's error.
QString refreshFailure(const QString& error);

}  // namespace DashboardTexts

}  // namespace kestrum
