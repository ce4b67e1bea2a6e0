#pragma once

#include <rapidjson/document.h>

#include <string>
#include <string_view>

namespace kestrum::json {

// The JSON kind of `value` with its article, for error texts: "a string", "an array", "null", ...
std::string_view describeKind(const rapidjson::Value& value);

// "expected <expected>, found <kind of value>".
std::string unexpectedKind(std::string_view expected, const rapidjson::Value& value);

}  // namespace kestrum::json
