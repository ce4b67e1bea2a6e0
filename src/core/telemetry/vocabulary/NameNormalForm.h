#pragma once

#include <string>
#include <string_view>

namespace kestrum {

// The normal form in which player names are compared: white space and line ends trimmed from both
// ends (Unicode spaces included), then lower-cased by Unicode rules. UTF-8 in, UTF-8 out.
std::string normalizedName(std::string_view name);

}  // namespace kestrum
