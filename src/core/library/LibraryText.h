#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrum {

// The separator of the pieces of a recording's title ("ARAM · Ahri · Mid"): a middle dot between blanks.
inline constexpr std::string_view kTitleSeparator = " \xC2\xB7 ";

// `title` cut at every separator, empty pieces kept, so that joinTitle gives the title back. Never empty:
// a title without a separator is one piece.
std::vector<std::string> splitTitle(std::string_view title);

// The pieces joined by the separator; no pieces give "".
std::string joinTitle(const std::vector<std::string>& pieces);

// The present pieces joined by the separator; absent when none is present.
std::optional<std::string> joinPresent(const std::vector<std::optional<std::string>>& pieces);

// Whether two UTF-8 texts are equal by Unicode case folding.
bool equalIgnoringCase(std::string_view a, std::string_view b);

}  // namespace kestrum
