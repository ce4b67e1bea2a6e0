#pragma once

#include <string>
#include <string_view>

namespace kestrum {

// The name of a game mode word ("CLASSIC", "ARAM", ...), compared upper-cased. An unknown word is shown
// with "_" as blanks and each word capitalised ("TUTORIAL_MODULE_1" reads "Tutorial Module 1").
std::string gameModeTitle(std::string_view gameMode);

}  // namespace kestrum
