#include "media/MovieFileCheck.h"

#include <QFile>

#include <cstdint>
#include <string_view>

namespace kestrum {

namespace {

// Finished movies have a handful of top-level atoms; a walk that finds far more is reading noise.
constexpr int kMostAtoms = 4096;

// What a QuickTime file may begin with.
bool isLeadingAtom(std::string_view type) {
    for (const std::string_view known : {"ftyp", "moov", "mdat", "wide", "free", "skip", "pnot"}) {
        if (type == known) return true;
    }
    return false;
}

bool isPrintableFourCC(const char* code) {
    for (int index = 0; index < 4; ++index) {
        const auto c = static_cast<unsigned char>(code[index]);
        if (c < 0x20 || c > 0x7E) return false;
    }
    return true;
}

std::uint64_t bigEndian(const char* bytes, int count) {
    std::uint64_t value = 0;
    for (int index = 0; index < count; ++index)
        value = (value << 8) | static_cast<unsigned char>(bytes[index]);
    return value;
}

}  // namespace

std::optional<QString> movieFileDamage(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return QStringLiteral("The movie file could not be read.");
    const auto fileSize = static_cast<std::uint64_t>(file.size());
    if (fileSize == 0) return QStringLiteral("The movie file is empty.");
    const QString notQuickTime = QStringLiteral("The file is not a QuickTime movie.");
    const QString cutShort = QStringLiteral("The movie was cut short: its last part is missing.");
    bool hasIndex = false;
    std::uint64_t at = 0;
    for (int atoms = 0; at < fileSize; ++atoms) {
        if (atoms == kMostAtoms) return notQuickTime;
        char header[16];
        if (fileSize - at < 8) return atoms == 0 ? notQuickTime : cutShort;
        if (!file.seek(static_cast<qint64>(at)) || file.read(header, 8) != 8)
            return QStringLiteral("The movie file could not be read.");
        if (atoms == 0 && !isLeadingAtom(std::string_view(header + 4, 4))) return notQuickTime;
        if (!isPrintableFourCC(header + 4)) return cutShort;
        std::uint64_t size = bigEndian(header, 4);
        if (size == 1) {  // a 64-bit size follows the type
            if (fileSize - at < 16 || file.read(header + 8, 8) != 8) return cutShort;
            size = bigEndian(header + 8, 8);
            if (size < 16) return atoms == 0 ? notQuickTime : cutShort;
        } else if (size == 0) {
            size = fileSize - at;  // to the end of the file: what an unfinished writer leaves
        } else if (size < 8) {
            return atoms == 0 ? notQuickTime : cutShort;
        }
        if (std::string_view(header + 4, 4) == "moov") hasIndex = true;
        if (size > fileSize - at)
            return hasIndex
                       ? cutShort
                       : QStringLiteral("The movie was cut off before it was finished: it has no index.");
        at += size;
    }
    if (!hasIndex) return QStringLiteral("The movie was cut off before it was finished: it has no index.");
    return std::nullopt;
}

}  // namespace kestrum
