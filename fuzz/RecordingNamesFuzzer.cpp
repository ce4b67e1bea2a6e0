// libFuzzer target for the short outside texts read as names: a movie's file name, which anyone may
// have given a file in the recordings folder, and the art host's version list (the first byte picks
// which). Neither may crash; a name's reading depends on its last path component alone, and what it
// reads is made of that component's pieces.
#include "FuzzFailure.h"
#include "core/assets/DataDragonVersionList.h"
#include "core/library/ParsedRecordingFileName.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

void checkPiece(const std::optional<std::string>& piece, const QString& name) {
    if (!piece) return;
    if (piece->empty() || piece->find('_') != std::string::npos)
        kestrum::fuzz::fail("recording file name", "a piece is empty or holds the separator");
    if (!name.contains(QString::fromStdString(*piece)))
        kestrum::fuzz::fail("recording file name", "a piece that is not in the name");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (data[0] % 2 == 1) {
        const std::optional<QString> version = kestrum::newestDataDragonVersion(bytes);
        const std::size_t start = bytes.find_first_not_of(" \t\n\r");
        if (version && (start == std::string_view::npos || bytes[start] != '['))
            kestrum::fuzz::fail("art host versions", "a version from something that is not an array");
        return 0;
    }
    const QString name = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    const kestrum::ParsedRecordingFileName parsed = kestrum::ParsedRecordingFileName::parse(name);
    const QString lastComponent = name.section(QLatin1Char('/'), -1);
    if (!lastComponent.isEmpty() &&
        !(kestrum::ParsedRecordingFileName::parse(QStringLiteral("/elsewhere/") + lastComponent) == parsed))
        kestrum::fuzz::fail("recording file name", "the folder changed the reading");
    for (const auto* piece : {&parsed.gameMode, &parsed.champion, &parsed.lane})
        checkPiece(*piece, lastComponent);
    return 0;
}
