#pragma once

#include <cstdint>

namespace kestrum {

// Whether an item id is a finished (legendary) item. In Arena ("CHERRY") recordings the raw id is looked
// up in the Arena list; elsewhere an id from 770000 to 779999 is first taken back to its standard id
// (773078 is 3078) and looked up in the standard list. Both lists are hashed sets built once, on first
// use, thread-safe.
bool isFinishedItem(std::int64_t itemID, bool isArena);

}  // namespace kestrum
