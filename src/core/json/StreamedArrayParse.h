#pragma once

#include "base/common/Result.h"

#include <rapidjson/document.h>

#include <functional>
#include <string_view>

namespace kestrum::json {

// Called with each element of the streamed array, in order, as a value of its own. The value lives only
// until the call returns. Returning false stops the parse, which then fails.
using StreamedElementVisitor = std::function<bool(const rapidjson::Value& element)>;

// Parses `bytes` as parseJson does (the same flags, numbers, checks and error texts), except for the
// array under the root object's key `streamedKey`: its elements are not kept in `document`, where the
// array stays empty, but handed one at a time to `visit` as soon as each is complete. So a document
// whose bulk is one long array is read in the memory of one element. A value under that key that is no
// array, and the same key deeper down, are kept as usual; a root that is no object streams nothing.
Status parseJsonStreamingArray(std::string_view bytes, std::string_view streamedKey,
                               rapidjson::Document& document, const StreamedElementVisitor& visit);

}  // namespace kestrum::json
