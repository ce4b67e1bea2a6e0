#include "core/json/ValueCodec.h"

#include <cmath>
#include <string>

namespace kestrum::json {

namespace {

// [-2^63, 2^63): the doubles that convert to std::int64_t without overflow.
constexpr double kInt64LowerBound = -9223372036854775808.0;
constexpr double kInt64UpperBound = 9223372036854775808.0;

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// Only the canonical 8-4-4-4-12 form is a UUID here; QUuid alone would also take braces.
bool isCanonicalUuidText(std::string_view text) {
    if (text.size() != 36) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool hyphenPlace = i == 8 || i == 13 || i == 18 || i == 23;
        if (hyphenPlace ? text[i] != '-' : !isHexDigit(text[i])) return false;
    }
    return true;
}

}  // namespace

bool ValueCodec<std::int64_t>::read(const rapidjson::Value& value, std::int64_t& out, JsonFailure& failure) {
    if (value.IsInt64()) {
        out = value.GetInt64();
        return true;
    }
    if (value.IsUint64()) return failure.fail("integer out of range");
    if (!value.IsNumber()) return failure.fail(unexpectedKind("an integer", value));
    const double number = value.GetDouble();
    if (!std::isfinite(number) || std::trunc(number) != number)
        return failure.fail("expected an integer, found a fraction");
    if (number < kInt64LowerBound || number >= kInt64UpperBound) return failure.fail("integer out of range");
    out = static_cast<std::int64_t>(number);
    return true;
}

bool ValueCodec<std::int64_t>::write(JsonWriter& writer, std::int64_t value, JsonFailure&) {
    writer.writeInt64(value);
    return true;
}

bool ValueCodec<double>::read(const rapidjson::Value& value, double& out, JsonFailure& failure) {
    if (!value.IsNumber()) return failure.fail(unexpectedKind("a number", value));
    out = value.GetDouble();
    return true;
}

bool ValueCodec<double>::write(JsonWriter& writer, double value, JsonFailure& failure) {
    if (writer.writeDouble(value)) return true;
    return failure.fail("non-finite number cannot be written (" + std::to_string(value) + ")");
}

bool ValueCodec<bool>::read(const rapidjson::Value& value, bool& out, JsonFailure& failure) {
    if (!value.IsBool()) return failure.fail(unexpectedKind("a boolean", value));
    out = value.GetBool();
    return true;
}

bool ValueCodec<bool>::write(JsonWriter& writer, bool value, JsonFailure&) {
    writer.writeBool(value);
    return true;
}

bool ValueCodec<std::string>::read(const rapidjson::Value& value, std::string& out, JsonFailure& failure) {
    if (!value.IsString()) return failure.fail(unexpectedKind("a string", value));
    const std::string_view text(value.GetString(), value.GetStringLength());
    if (!isWellFormedUtf8(text)) return failure.fail("text is not valid UTF-8");
    out.assign(text);
    return true;
}

bool ValueCodec<std::string>::write(JsonWriter& writer, const std::string& value, JsonFailure& failure) {
    if (writer.writeString(value)) return true;
    return failure.fail("text is not valid UTF-8");
}

bool ValueCodec<QUuid>::read(const rapidjson::Value& value, QUuid& out, JsonFailure& failure) {
    if (!value.IsString()) return failure.fail(unexpectedKind("a UUID string", value));
    const std::string_view text(value.GetString(), value.GetStringLength());
    if (!isCanonicalUuidText(text)) return failure.fail("invalid UUID");
    out = QUuid::fromString(QLatin1String(text.data(), static_cast<qsizetype>(text.size())));
    return true;
}

bool ValueCodec<QUuid>::write(JsonWriter& writer, const QUuid& value, JsonFailure&) {
    const QByteArray text = value.toByteArray(QUuid::WithoutBraces).toUpper();
    return writer.writeString(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
}

bool ValueCodec<ReferenceDate>::read(const rapidjson::Value& value, ReferenceDate& out,
                                     JsonFailure& failure) {
    if (!value.IsNumber()) return failure.fail(unexpectedKind("a date (seconds since 2001)", value));
    out.secondsSince2001 = value.GetDouble();
    return true;
}

bool ValueCodec<ReferenceDate>::write(JsonWriter& writer, const ReferenceDate& value, JsonFailure& failure) {
    return ValueCodec<double>::write(writer, value.secondsSince2001, failure);
}

namespace detail {

bool readEnumIndex(const rapidjson::Value& value, std::span<const std::string_view> texts, std::size_t& index,
                   JsonFailure& failure) {
    if (!value.IsString()) return failure.fail(unexpectedKind("a string", value));
    const std::string_view text(value.GetString(), value.GetStringLength());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        if (texts[i] == text) {
            index = i;
            return true;
        }
    }
    constexpr std::size_t kQuotedLimit = 64;
    std::string quoted(text.substr(0, kQuotedLimit));
    if (text.size() > kQuotedLimit) quoted += "...";
    return failure.fail("unknown enumeration text \"" + quoted + "\"");
}

bool writeEnumText(JsonWriter& writer, std::span<const std::string_view> texts, std::size_t index,
                   JsonFailure& failure) {
    if (index >= texts.size())
        return failure.fail("no stored text for enumeration value " + std::to_string(index));
    return writer.writeString(texts[index]);
}

}  // namespace detail

}  // namespace kestrum::json
