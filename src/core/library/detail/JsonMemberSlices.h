#pragma once

#include "base/common/Result.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace kestrum {

// The members of a JSON object as the raw text of their values, without building a document: one pass
// of the SAX reader over the bytes, which also checks that the whole text is well-formed UTF-8 JSON.
// A document whose parts are decoded by different codecs (the detail cache's file, whose telemetry is
// read by the session document's codec) is cut up with it.
//
// Only the top-level object and, when `nestedKey` names a member of it whose value is an object, the
// members of that object are listed. A key given twice at either of these levels fails, as in every
// reader here. The views point into the bytes given and live as long as they do.
struct JsonMemberSlices {
    std::map<std::string, std::string_view, std::less<>> members;
    std::map<std::string, std::string_view, std::less<>> nestedMembers;
};

Result<JsonMemberSlices> sliceJsonMembers(std::string_view bytes, std::string_view nestedKey);

}  // namespace kestrum
