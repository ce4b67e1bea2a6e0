#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kestrum {

// The position words of the library. Three readers, three rules, kept apart on purpose:
// - a file name's lane word is only one of the five positions the save path writes;
// - the normal position also takes the aliases "MID", "BOT" and "SUPPORT" (the local player search and
//   the lane filter);
// - the display word of a lane knows only the five positions.

// Whether `word`, upper-cased, is "TOP", "JUNGLE", "MIDDLE", "BOTTOM" or "UTILITY".
bool isLaneWord(std::string_view word);

// "TOP", "JUNGLE", "MIDDLE", "BOTTOM" or "UTILITY" for the upper-cased word, with "MID" as "MIDDLE",
// "BOT" as "BOTTOM" and "SUPPORT" as "UTILITY"; nothing for any other word.
std::optional<std::string> normalizedPosition(std::string_view word);

// "Top", "Jungle", "Mid", "Bot", "Support" for the five lane words (any case); nothing for others.
std::optional<std::string> laneDisplayName(std::string_view laneWord);

// Only the letters and digits of `name`, lower-cased ("Miss Fortune" -> "missfortune"); nothing when
// none remain.
std::optional<std::string> normalizedChampion(std::string_view name);

}  // namespace kestrum
