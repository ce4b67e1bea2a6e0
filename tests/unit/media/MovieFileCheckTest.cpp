// Telling a finished movie from one cut off before its index, by its top-level atoms.
#include "media/MovieFileCheck.h"

#include "support/TestEnvironment.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

namespace kestrum {
namespace {

QByteArray atom(const char* type, int payloadBytes) {
    QByteArray bytes;
    const quint32 size = static_cast<quint32>(8 + payloadBytes);
    for (int shift = 24; shift >= 0; shift -= 8) bytes.append(static_cast<char>((size >> shift) & 0xFF));
    bytes.append(type, 4);
    bytes.append(QByteArray(payloadBytes, 'x'));
    return bytes;
}

// An atom whose size field says `declared` but which holds `payloadBytes`.
QByteArray atomDeclaring(const char* type, quint32 declared, int payloadBytes) {
    QByteArray bytes = atom(type, payloadBytes);
    for (int index = 0; index < 4; ++index)
        bytes[index] = static_cast<char>((declared >> (24 - 8 * index)) & 0xFF);
    return bytes;
}

QByteArray largeAtom(const char* type, int payloadBytes) {
    QByteArray bytes("\0\0\0\1", 4);
    bytes.append(type, 4);
    const quint64 size = 16 + static_cast<quint64>(payloadBytes);
    for (int shift = 56; shift >= 0; shift -= 8) bytes.append(static_cast<char>((size >> shift) & 0xFF));
    bytes.append(QByteArray(payloadBytes, 'y'));
    return bytes;
}

TEST(MovieFileCheck, TellsAFinishedMovieFromADamagedOne) {
    const QString noIndex = QStringLiteral("The movie was cut off before it was finished: it has no index.");
    const QString cutShort = QStringLiteral("The movie was cut short: its last part is missing.");
    const QString notQuickTime = QStringLiteral("The file is not a QuickTime movie.");
    const QByteArray head = atom("ftyp", 12) + atom("wide", 0);
    const std::vector<std::tuple<const char*, QByteArray, std::optional<QString>>> cases{
        {"finished, index last", head + atom("mdat", 500) + atom("moov", 80), std::nullopt},
        {"finished, index first", atom("ftyp", 12) + atom("moov", 80) + atom("mdat", 500), std::nullopt},
        {"finished, 64-bit media data", atom("ftyp", 12) + largeAtom("mdat", 300) + atom("moov", 40),
         std::nullopt},
        {"unfinished: media data to the end", head + atomDeclaring("mdat", 0, 700), noIndex},
        {"unfinished: media data longer than the file", head + atomDeclaring("mdat", 5000, 700), noIndex},
        {"index cut short", head + atom("mdat", 500) + atomDeclaring("moov", 90, 40), cutShort},
        {"a few stray bytes after the index", head + atom("mdat", 50) + atom("moov", 40) + QByteArray("abc"),
         cutShort},
        {"an empty file", QByteArray(), QStringLiteral("The movie file is empty.")},
        {"text", QByteArray("hello, this is not a movie at all"), notQuickTime},
        {"a size below a header", atomDeclaring("ftyp", 4, 12), notQuickTime},
    };
    QTemporaryDir folder;
    for (const auto& [name, bytes, expected] : cases) {
        SCOPED_TRACE(name);
        const QString path = folder.filePath(QStringLiteral("movie.mov"));
        ASSERT_TRUE(test::writeFileBytes(path, bytes));
        EXPECT_EQ(movieFileDamage(path), expected);
    }
    EXPECT_EQ(movieFileDamage(folder.filePath(QStringLiteral("missing.mov"))),
              QStringLiteral("The movie file could not be read."));
}

}  // namespace
}  // namespace kestrum
