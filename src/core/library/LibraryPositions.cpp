#include "core/library/LibraryPositions.h"

#include "core/telemetry/vocabulary/TextCase.h"

#include <QList>
#include <QString>

#include <array>
#include <utility>

namespace kestrum {

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kLaneDisplayNames{{
    {"TOP", "Top"},
    {"JUNGLE", "Jungle"},
    {"MIDDLE", "Mid"},
    {"BOTTOM", "Bot"},
    {"UTILITY", "Support"},
}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 8> kPositionAliases{{
    {"TOP", "TOP"},
    {"JUNGLE", "JUNGLE"},
    {"MIDDLE", "MIDDLE"},
    {"MID", "MIDDLE"},
    {"BOTTOM", "BOTTOM"},
    {"BOT", "BOTTOM"},
    {"UTILITY", "UTILITY"},
    {"SUPPORT", "UTILITY"},
}};

}  // namespace

bool isLaneWord(std::string_view word) {
    return laneDisplayName(word).has_value();
}

std::optional<std::string> normalizedPosition(std::string_view word) {
    const std::string upper = upperCased(word);
    for (const auto& [alias, position] : kPositionAliases) {
        if (alias == upper) return std::string(position);
    }
    return std::nullopt;
}

std::optional<std::string> laneDisplayName(std::string_view laneWord) {
    const std::string upper = upperCased(laneWord);
    for (const auto& [lane, display] : kLaneDisplayNames) {
        if (lane == upper) return std::string(display);
    }
    return std::nullopt;
}

std::optional<std::string> normalizedChampion(std::string_view name) {
    const QString text = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    QString kept;
    kept.reserve(text.size());
    // By code point, so that letters outside the basic plane are kept whole.
    for (const char32_t codePoint : text.toUcs4()) {
        if (QChar::isLetterOrNumber(codePoint)) kept.append(QString::fromUcs4(&codePoint, 1));
    }
    if (kept.isEmpty()) return std::nullopt;
    const QByteArray lowered = kept.toLower().toUtf8();
    return std::string(lowered.constData(), static_cast<std::size_t>(lowered.size()));
}

}  // namespace kestrum
