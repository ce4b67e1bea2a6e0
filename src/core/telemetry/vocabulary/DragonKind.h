#pragma once

#include "core/telemetry/vocabulary/NamedColor.h"

#include <string_view>

namespace kestrum {

// The three faces of a dragon kind. Each lower-cases the text (pass "" for an absent one) and looks for
// "elder", "infernal"/"fire", "mountain"/"earth", "ocean"/"water", "cloud"/"air", "hextech",
// "chemtech" in this order, each as a part of the text; the first hit decides, nothing is generic.
std::string_view dragonSymbolName(std::string_view dragonType);
NamedColor dragonColor(std::string_view dragonType);
std::string_view dragonAssetName(std::string_view dragonType);

}  // namespace kestrum
