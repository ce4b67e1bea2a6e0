#include "core/telemetry/vocabulary/ChampionNames.h"

#include "core/telemetry/vocabulary/TextCase.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kestrum {

namespace {

constexpr std::string_view kDisplayNamePrefix = "game_character_displayname_";
constexpr std::string_view kCharacterPrefix = "Character_";
constexpr std::string_view kCharacterSuffix = "_Name";

// Champion keys whose readable name is not the key capitalised, keyed by the upper-cased key.
constexpr std::array<std::pair<std::string_view, std::string_view>, 20> kIrregularChampionNames{{
    {"AURELIONSOL", "Aurelion Sol"}, {"BELVETH", "Bel'Veth"},
    {"CHOGATH", "Cho'Gath"},         {"DRMUNDO", "Dr. Mundo"},
    {"JARVANIV", "Jarvan IV"},       {"KAISA", "Kai'Sa"},
    {"KHAZIX", "Kha'Zix"},           {"KOGMAW", "Kog'Maw"},
    {"KSANTE", "K'Sante"},           {"LEESIN", "Lee Sin"},
    {"MASTERYI", "Master Yi"},       {"MISSFORTUNE", "Miss Fortune"},
    {"MONKEYKING", "Wukong"},        {"NUNUWILLUMP", "Nunu & Willump"},
    {"REKSAI", "Rek'Sai"},           {"RENATAGLASC", "Renata Glasc"},
    {"TAHMKENCH", "Tahm Kench"},     {"TWISTEDFATE", "Twisted Fate"},
    {"VELKOZ", "Vel'Koz"},           {"XINZHAO", "Xin Zhao"},
}};

std::string lastUnderscorePart(std::string_view raw) {
    std::string_view last;
    std::size_t start = 0;
    while (start <= raw.size()) {
        const std::size_t end = std::min(raw.find('_', start), raw.size());
        if (end > start) last = raw.substr(start, end - start);
        start = end + 1;
    }
    return std::string(last);
}

}  // namespace

std::string cleanedChampionName(const RecordingScoreboardPlayer& player) {
    if (!player.rawChampionName) return player.championName;
    const std::string_view raw = *player.rawChampionName;
    if (raw.starts_with(kDisplayNamePrefix)) return std::string(raw.substr(kDisplayNamePrefix.size()));
    if (raw.starts_with(kCharacterPrefix) && raw.ends_with(kCharacterSuffix)) {
        // "Character_Name" carries both ends overlapped and so nothing between them.
        const std::size_t ends = kCharacterPrefix.size() + kCharacterSuffix.size();
        if (raw.size() < ends) return {};
        return std::string(raw.substr(kCharacterPrefix.size(), raw.size() - ends));
    }
    std::string last = lastUnderscorePart(raw);
    return last.empty() ? player.championName : last;
}

std::string championDisplayName(std::string_view key) {
    const std::string upper = upperCased(key);
    for (const auto& [irregularKey, name] : kIrregularChampionNames) {
        if (irregularKey == upper) return std::string(name);
    }
    return capitalizedWords(key);
}

}  // namespace kestrum
