#include "core/json/JsonValueKind.h"

namespace kestrum::json {

std::string_view describeKind(const rapidjson::Value& value) {
    switch (value.GetType()) {
        case rapidjson::kNullType:
            return "null";
        case rapidjson::kFalseType:
        case rapidjson::kTrueType:
            return "a boolean";
        case rapidjson::kObjectType:
            return "an object";
        case rapidjson::kArrayType:
            return "an array";
        case rapidjson::kStringType:
            return "a string";
        case rapidjson::kNumberType:
            return "a number";
    }
    return "an unknown value";
}

std::string unexpectedKind(std::string_view expected, const rapidjson::Value& value) {
    std::string text = "expected ";
    text += expected;
    text += ", found ";
    text += describeKind(value);
    return text;
}

}  // namespace kestrum::json
