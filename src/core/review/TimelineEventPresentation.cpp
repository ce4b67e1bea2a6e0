#include "core/review/TimelineEventPresentation.h"

#include "core/review/TimelineVisibility.h"
#include "core/telemetry/vocabulary/DragonKind.h"
#include "core/telemetry/vocabulary/EventPresentation.h"
#include "core/telemetry/vocabulary/LiveEventNames.h"
#include "core/telemetry/vocabulary/TextCase.h"

#include <array>
#include <string>
#include <utility>

namespace kestrum {

namespace {

namespace names = liveEventName;

QString fromView(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

constexpr std::array<std::pair<std::string_view, std::string_view>, 9> kArtNames{{
    {names::baronKill, "baron"},
    {names::heraldKill, "rift_herald"},
    {names::hordeKill, "void_grub"},
    {names::voidGrubKill, "void_grub"},
    {names::turretKilled, "minimap_turret"},
    {names::inhibKilled, "minimap_inhibitor"},
    {names::nexusKill, "minimap_nexus"},
    {names::nexusKilled, "minimap_nexus"},
    {names::nexusDestroyed, "minimap_nexus"},
}};

struct KillerWords {
    std::array<std::string_view, 2> words;  // an empty second word tests nothing
    std::string_view symbolName;
};

// The last row also takes a name starting "sru_" (the jungle's camps, "SRU_Gromp..."), tested as a prefix.
constexpr std::array<KillerWords, 7> kKillerSymbols{{
    {{"minion", ""}, "person.3.fill"},
    {{"turret", ""}, "building.columns.fill"},
    {{"inhib", "barracks"}, "diamond.bottomhalf.filled"},
    {{"dragon", ""}, "flame.fill"},
    {{"baron", ""}, "crown.fill"},
    {{"herald", ""}, "shield.fill"},
    {{"monster", ""}, "pawprint.fill"},
}};

}  // namespace

QString timelineEventTitle(const RecordingEvent& event) {
    if (isChampionKill(event)) {
        if (event.isLocalPlayerKill.value_or(false)) return QStringLiteral("Your kill");
        if (event.isLocalPlayerDeath.value_or(false)) return QStringLiteral("Your death");
    }
    if (event.name == names::gameStart) return QStringLiteral("Game start");
    if (event.name == names::gameEnd) return QStringLiteral("Game end");
    return QString::fromStdString(eventDisplayTitle(event));
}

QString timelineEventSymbolName(const RecordingEvent& event) {
    return fromView(eventSymbolName(event));
}

std::optional<QString> timelineEventArtName(const RecordingEvent& event) {
    if (event.name == names::dragonKill) return fromView(dragonAssetName(event.detail.value_or("")));
    for (const auto& [name, art] : kArtNames) {
        if (name == event.name) return fromView(art);
    }
    return std::nullopt;
}

std::optional<QString> killerSymbolName(std::string_view killerName) {
    const std::string lowered = lowerCased(killerName);
    for (const KillerWords& entry : kKillerSymbols) {
        for (const std::string_view word : entry.words) {
            if (!word.empty() && lowered.find(word) != std::string::npos) return fromView(entry.symbolName);
        }
    }
    if (lowered.starts_with("sru_")) return fromView(kKillerSymbols.back().symbolName);
    return std::nullopt;
}

}  // namespace kestrum
