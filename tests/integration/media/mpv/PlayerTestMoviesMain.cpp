// kestrum-player-test-movies <folder>: writes the movies that the player's tests and its benchmark
// open (see StripeMovies.h), then a stamp file that the build waits for. Without an HEVC encoder it says
// so and writes the stamp alone: the tests then skip, naming the missing movie (and fail in CI).
#include "StripeMovies.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: kestrum-player-test-movies <folder>\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    if (!kestrum::test::writePlayerTestMovies(folder)) {
        std::fprintf(stderr, "kestrum-player-test-movies: could not write the movies into %s\n", argv[1]);
    }
    QFile stamp(folder + QStringLiteral("/written.stamp"));
    return stamp.open(QIODevice::WriteOnly) ? 0 : 1;
}
