// kestrum-seed-library FOLDER [COUNT]: a library of made-up recordings to look at the review window on.
// Each recording is a session document of the synthetic game (its own seed) beside a short test-pattern
// movie made by ffmpeg, named as the recorder names its files, so that the local player (and so the
// champion, the lane, the KDA and the result) differs from one to the next. (The library dates a
// recording by its file's birth time, so they all fall on the day they are written.)
// One more recording has a movie that is not a movie, to show the damaged state.
#include "SyntheticGame.h"
#include "SyntheticRoster.h"
#include "core/telemetry/SessionDocumentCodec.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QProcess>

#include <cstdio>

namespace {

// Long enough for a game with kills on every side, small enough to be written in seconds.
constexpr double kMovieSeconds = 900;

bool writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool writeMovie(const QString& path, int index) {
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y"), QStringLiteral("-f"),
                  QStringLiteral("lavfi"), QStringLiteral("-i"),
                  QStringLiteral("testsrc2=size=640x360:rate=5:duration=%1,hue=h=%2")
                      .arg(kMovieSeconds)
                      .arg(index * 40),
                  QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-preset"),
                  QStringLiteral("ultrafast"), QStringLiteral("-g"), QStringLiteral("10"),
                  QStringLiteral("-pix_fmt"), QStringLiteral("yuv420p"), path});
    return ffmpeg.waitForFinished(120000) && ffmpeg.exitCode() == 0;
}

// The recorder's name for the game of `index`, whose local player is the roster's `player`.
QString movieName(int index, const kestrum::synthetic::SyntheticPlayerProfile& player) {
    const QDateTime when = QDateTime(QDate(2026, 11, 23), QTime(22, 40)).addSecs(-index * 19 * 3600);
    return when.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss")) +
           QStringLiteral("_CLASSIC_%1_%2.mov")
               .arg(QLatin1String(player.championKey), QLatin1String(player.position));
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2) {
        std::fputs("usage: kestrum-seed-library FOLDER [COUNT]\n", stderr);
        return 2;
    }
    const QDir folder(arguments.at(1));
    const int count = arguments.size() > 2 ? arguments.at(2).toInt() : 6;
    if (!QDir().mkpath(folder.path()) || count < 1) {
        std::fprintf(stderr, "kestrum-seed-library: cannot use %s\n", qPrintable(folder.path()));
        return 2;
    }
    using namespace kestrum::synthetic;
    for (int index = 0; index <= count; ++index) {
        const SyntheticPlayerProfile& player = syntheticRoster()[(index * 3 + 2) % kPlayerCount];
        SyntheticGameOptions options;
        options.seed = 40 + index;
        options.gameSeconds = kMovieSeconds - 12;
        options.loadingSeconds = 6;
        const SyntheticGame game = makeSyntheticGame(options);
        const QString movie = folder.filePath(movieName(index, player));
        const auto encoded = kestrum::encodeSessionData(game.document);
        QString document = movie;
        document.replace(QStringLiteral(".mov"), QStringLiteral(".json"));
        const bool isDamaged = index == count;
        const bool written =
            encoded.ok() && writeFile(document, QByteArray::fromStdString(encoded.value())) &&
            (isDamaged ? writeFile(movie, QByteArrayLiteral("no movie here")) : writeMovie(movie, index));
        if (!written) {
            std::fprintf(stderr, "kestrum-seed-library: cannot write %s\n", qPrintable(movie));
            return 1;
        }
        std::printf("%s\n", qPrintable(movie));
    }
    return 0;
}
