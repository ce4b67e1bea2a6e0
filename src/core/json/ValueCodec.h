#pragma once

#include "base/common/ReferenceDate.h"
#include "core/json/FieldTable.h"
#include "core/json/JsonFailure.h"
#include "core/json/JsonValueKind.h"
#include "core/json/JsonWriter.h"

#include <rapidjson/document.h>

#include <QUuid>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace kestrum::json {

// The stored texts of an enumeration whose enumerators run 0, 1, 2, ... in declaration order:
// specialise with `static constexpr std::array<std::string_view, N> texts{...}` in that order.
template <class Enum>
struct EnumTexts;

// Any JSON number whose value is an exact integer in range; a fraction or an out-of-range value fails.
template <>
struct ValueCodec<std::int64_t> {
    static bool read(const rapidjson::Value& value, std::int64_t& out, JsonFailure& failure);
    static bool write(JsonWriter& writer, std::int64_t value, JsonFailure& failure);
};

// Any JSON number; writing a NaN or an infinity fails.
template <>
struct ValueCodec<double> {
    static bool read(const rapidjson::Value& value, double& out, JsonFailure& failure);
    static bool write(JsonWriter& writer, double value, JsonFailure& failure);
};

// Only `true` and `false`.
template <>
struct ValueCodec<bool> {
    static bool read(const rapidjson::Value& value, bool& out, JsonFailure& failure);
    static bool write(JsonWriter& writer, bool value, JsonFailure& failure);
};

// UTF-8 text; embedded NUL characters are kept.
template <>
struct ValueCodec<std::string> {
    static bool read(const rapidjson::Value& value, std::string& out, JsonFailure& failure);
    static bool write(JsonWriter& writer, const std::string& value, JsonFailure& failure);
};

// The 36-character hyphenated form, read in either case and written in upper case.
template <>
struct ValueCodec<QUuid> {
    static bool read(const rapidjson::Value& value, QUuid& out, JsonFailure& failure);
    static bool write(JsonWriter& writer, const QUuid& value, JsonFailure& failure);
};

// A JSON number of seconds since 2001-01-01 00:00:00 UTC.
template <>
struct ValueCodec<ReferenceDate> {
    static bool read(const rapidjson::Value& value, ReferenceDate& out, JsonFailure& failure);
    static bool write(JsonWriter& writer, const ReferenceDate& value, JsonFailure& failure);
};

template <class Element>
struct ValueCodec<std::vector<Element>> {
    static bool read(const rapidjson::Value& value, std::vector<Element>& out, JsonFailure& failure) {
        if (!value.IsArray()) return failure.fail(unexpectedKind("an array", value));
        out.clear();
        out.reserve(value.Size());
        std::size_t index = 0;
        for (const auto& element : value.GetArray()) {
            if (!ValueCodec<Element>::read(element, out.emplace_back(), failure)) {
                failure.addIndex(index);
                return false;
            }
            ++index;
        }
        return true;
    }

    static bool write(JsonWriter& writer, const std::vector<Element>& value, JsonFailure& failure) {
        writer.beginArray();
        for (std::size_t index = 0; index < value.size(); ++index) {
            if (index > 0) writer.comma();
            if (!ValueCodec<Element>::write(writer, value[index], failure)) {
                failure.addIndex(index);
                return false;
            }
        }
        writer.endArray();
        return true;
    }
};

namespace detail {
bool readEnumIndex(const rapidjson::Value& value, std::span<const std::string_view> texts, std::size_t& index,
                   JsonFailure& failure);
bool writeEnumText(JsonWriter& writer, std::span<const std::string_view> texts, std::size_t index,
                   JsonFailure& failure);
}  // namespace detail

template <class Enum>
requires std::is_enum_v<Enum>
struct ValueCodec<Enum> {
    static bool read(const rapidjson::Value& value, Enum& out, JsonFailure& failure) {
        std::size_t index = 0;
        if (!detail::readEnumIndex(value, EnumTexts<Enum>::texts, index, failure)) return false;
        out = static_cast<Enum>(index);
        return true;
    }

    static bool write(JsonWriter& writer, Enum value, JsonFailure& failure) {
        return detail::writeEnumText(writer, EnumTexts<Enum>::texts, static_cast<std::size_t>(value),
                                     failure);
    }
};

template <class Record>
requires requires {
    FieldTable<Record>::fields;
}
struct ValueCodec<Record> {
    static_assert(isValidTable(FieldTable<Record>::fields),
                  "field table keys must be plain ASCII names in strictly ascending byte order, at most 64");

    static bool read(const rapidjson::Value& value, Record& out, JsonFailure& failure) {
        return readObject(value, &out, FieldTable<Record>::fields, failure);
    }

    static bool write(JsonWriter& writer, const Record& value, JsonFailure& failure) {
        return writeObject(writer, &value, FieldTable<Record>::fields, failure);
    }
};

}  // namespace kestrum::json
