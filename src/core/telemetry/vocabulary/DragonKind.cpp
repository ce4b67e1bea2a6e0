#include "core/telemetry/vocabulary/DragonKind.h"

#include "core/telemetry/vocabulary/TextCase.h"

#include <array>
#include <string>

namespace kestrum {

namespace {

struct DragonFaces {
    std::array<std::string_view, 2> words;  // an empty second word tests nothing
    std::string_view symbolName;
    NamedColor color;
    std::string_view assetName;
};

// Tried in order; the feed spells the kinds "Fire", "Earth", "Water", "Air", "Elder", "Hextech",
// "Chemtech", and older and newer clients use the map names ("Infernal", "Mountain", ...).
constexpr std::array<DragonFaces, 7> kDragonKinds{{
    {{"elder", ""}, "crown.fill", NamedColor::yellow, "dragon_elder"},
    {{"infernal", "fire"}, "flame.fill", NamedColor::orange, "dragon_infernal"},
    {{"mountain", "earth"}, "mountain.2.fill", NamedColor::brown, "dragon_mountain"},
    {{"ocean", "water"}, "drop.fill", NamedColor::cyan, "dragon_ocean"},
    {{"cloud", "air"}, "wind", NamedColor::mint, "dragon_cloud"},
    {{"hextech", ""}, "bolt.fill", NamedColor::blue, "dragon_hextech"},
    {{"chemtech", ""}, "atom", NamedColor::green, "dragon_chemtech"},
}};

constexpr DragonFaces kGenericDragon{
    {"", ""}, "circle.hexagongrid.fill", NamedColor::secondary, "dragon_generic"};

const DragonFaces& dragonFaces(std::string_view dragonType) {
    const std::string lowered = lowerCased(dragonType);
    for (const auto& kind : kDragonKinds) {
        for (const std::string_view word : kind.words) {
            if (!word.empty() && lowered.find(word) != std::string::npos) return kind;
        }
    }
    return kGenericDragon;
}

}  // namespace

std::string_view dragonSymbolName(std::string_view dragonType) {
    return dragonFaces(dragonType).symbolName;
}

NamedColor dragonColor(std::string_view dragonType) {
    return dragonFaces(dragonType).color;
}

std::string_view dragonAssetName(std::string_view dragonType) {
    return dragonFaces(dragonType).assetName;
}

}  // namespace kestrum
