#pragma once

#include <QString>
#include <QtGlobal>

namespace kestrum::test {

// Movies like the recorder's (720p30 HEVC, a key frame every 2 seconds, one AAC sound track), written by
// the project's MovieWriter, whose every frame shows the game simulator's clock stripe reading the
// frame's own time in milliseconds plus `stripeOffsetMs`. A picture of the player read back through
// decodeClockStripe thus tells exactly which frame is on screen.
inline constexpr int kStripeMovieWidth = 1280;
inline constexpr int kStripeMovieHeight = 720;
inline constexpr int kStripeMovieFramesPerSecond = 30;

// The stripe time of the frame at `seconds` (frames stand at whole multiples of 1/30 s).
qint64 stripeMsOfFrameAt(double seconds, qint64 stripeOffsetMs = 0);

// Writes the movie; false when the writer fails (for example, no HEVC encoder).
bool writeStripeMovie(const QString& path, double durationSeconds, qint64 stripeOffsetMs);

// The files the player's tests open, written at build time into one folder by
// kestrum-player-test-movies.
struct PlayerTestMovies {
    static constexpr double kClockSeconds = 12;
    static constexpr double kOtherSeconds = 4;
    static constexpr qint64 kOtherOffsetMs = 100'000;

    QString folder;
    QString clock() const { return folder + QStringLiteral("/clock-12s.mov"); }
    // Another movie, whose stripe reads 100 seconds more: a picture tells the two apart.
    QString other() const { return folder + QStringLiteral("/other-4s.mov"); }
    // The clock movie cut off after its first 300 kB: no "moov" atom.
    QString truncated() const { return folder + QStringLiteral("/truncated.mov"); }
    // A text file named like a movie.
    QString notAMovie() const { return folder + QStringLiteral("/not-a-movie.mov"); }
    // An empty file.
    QString empty() const { return folder + QStringLiteral("/empty.mov"); }
};

// Writes every movie of PlayerTestMovies into `folder`; false on the first failure.
bool writePlayerTestMovies(const QString& folder);

}  // namespace kestrum::test
