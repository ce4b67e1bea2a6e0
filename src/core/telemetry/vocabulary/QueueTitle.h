#pragma once

#include <cstdint>
#include <string_view>

namespace kestrum {

// The name of a queue id of the match record; "League Match" for any id the table does not know.
std::string_view queueTitle(std::int64_t queueID);

}  // namespace kestrum
