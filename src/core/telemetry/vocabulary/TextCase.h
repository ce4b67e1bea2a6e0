#pragma once

#include <string>
#include <string_view>

namespace kestrum {

// Unicode-aware case helpers over UTF-8 text, shared by the vocabulary's tables.

std::string upperCased(std::string_view text);
std::string lowerCased(std::string_view text);

// Every word (a run of characters between white space or line ends) starts with its title-case
// first character and continues in lower case; the separators are kept as they are.
std::string capitalizedWords(std::string_view text);

// Whether `needle` occurs in `text`, ignoring case.
bool containsIgnoringCase(std::string_view text, std::string_view needle);

}  // namespace kestrum
