#pragma once

#include <cstdint>
#include <vector>

namespace kestrum {

class MpvHandle;

// What an item's renderer tells the item at each synchronisation: which engine it has a render context
// for, and how many new pictures it drew with that context. `contextGeneration` changes with every context
// made or freed by any renderer, so that a count is never compared across contexts.
struct MpvRenderReport {
    const MpvHandle* engine = nullptr;  // identity only; never dereferenced by the item
    std::uint64_t contextGeneration = 0;
    std::uint64_t picturesDrawn = 0;
    // The prepared players' engines that have a render context of their own here (decoding their
    // picture, not drawn on screen), in no particular order.
    std::vector<const MpvHandle*> warmEngines;

    friend bool operator==(const MpvRenderReport&, const MpvRenderReport&) = default;
};

}  // namespace kestrum
