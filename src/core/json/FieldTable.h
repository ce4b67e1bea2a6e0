#pragma once

#include "core/json/JsonFailure.h"
#include "core/json/JsonWriter.h"

#include <rapidjson/document.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>

namespace kestrum::json {

// The one codec of a JSON value of type T: `static bool read(const rapidjson::Value&, T&, JsonFailure&)`
// and `static bool write(JsonWriter&, const T&, JsonFailure&)`. Specialised in ValueCodec.h for the
// stored scalar types, arrays, enumerations and every record that has a FieldTable.
template <class T>
struct ValueCodec;

// A record's table of fields: specialise with `static constexpr auto fields = fieldTable<Record>(...)`,
// listing the fields in ascending byte order of their keys (the order in which they are written).
template <class Record>
struct FieldTable;

enum class Presence : std::uint8_t { required, optional };

// One row of a record's table, type-erased over the record so that the object walk in FieldTable.cpp
// is compiled once for all records. `record` always points at the Record of the table it belongs to.
struct FieldDescriptor {
    std::string_view key;
    Presence presence = Presence::required;
    // Reads a non-null JSON value into the member of a freshly default-constructed record.
    bool (*read)(const rapidjson::Value& value, void* record, JsonFailure& failure) = nullptr;
    // False for an optional member without a value: its key is omitted.
    bool (*isPresent)(const void* record) = nullptr;
    bool (*write)(JsonWriter& writer, const void* record, JsonFailure& failure) = nullptr;
};

// A row typed by its record, so that a table accepts only members of its own record.
template <class Record>
struct Field {
    FieldDescriptor descriptor;
};

namespace detail {

template <class Member>
struct MemberPointerTraits;

template <class Record, class Value>
struct MemberPointerTraits<Value Record::*> {
    using RecordType = Record;
    using ValueType = Value;
};

template <class T>
struct OptionalTraits {
    static constexpr bool isOptional = false;
};

template <class T>
struct OptionalTraits<std::optional<T>> {
    static constexpr bool isOptional = true;
    using ValueType = T;
};

template <auto Member>
using RecordOf = typename MemberPointerTraits<decltype(Member)>::RecordType;
template <auto Member>
using MemberType = typename MemberPointerTraits<decltype(Member)>::ValueType;

template <auto Member>
bool readRequired(const rapidjson::Value& value, void* record, JsonFailure& failure) {
    auto& target = static_cast<RecordOf<Member>*>(record)->*Member;
    return ValueCodec<MemberType<Member>>::read(value, target, failure);
}

template <auto Member>
bool writeRequired(JsonWriter& writer, const void* record, JsonFailure& failure) {
    const auto& source = static_cast<const RecordOf<Member>*>(record)->*Member;
    return ValueCodec<MemberType<Member>>::write(writer, source, failure);
}

template <auto Member>
bool alwaysPresent(const void*) {
    return true;
}

template <auto Member>
bool readOptional(const rapidjson::Value& value, void* record, JsonFailure& failure) {
    auto& target = static_cast<RecordOf<Member>*>(record)->*Member;
    using Inner = typename OptionalTraits<MemberType<Member>>::ValueType;
    return ValueCodec<Inner>::read(value, target.emplace(), failure);
}

template <auto Member>
bool writeOptional(JsonWriter& writer, const void* record, JsonFailure& failure) {
    const auto& source = static_cast<const RecordOf<Member>*>(record)->*Member;
    using Inner = typename OptionalTraits<MemberType<Member>>::ValueType;
    return ValueCodec<Inner>::write(writer, *source, failure);
}

template <auto Member>
bool hasValue(const void* record) {
    return (static_cast<const RecordOf<Member>*>(record)->*Member).has_value();
}

}  // namespace detail

// A key that must be present and non-null; the member is a plain value.
template <auto Member>
constexpr Field<detail::RecordOf<Member>> requiredField(std::string_view key) {
    static_assert(!detail::OptionalTraits<detail::MemberType<Member>>::isOptional,
                  "a required field is a plain member, not a std::optional");
    return {{key, Presence::required, &detail::readRequired<Member>, &detail::alwaysPresent<Member>,
             &detail::writeRequired<Member>}};
}

// A key that may be missing or null; the member is a std::optional, omitted from the output when empty.
template <auto Member>
constexpr Field<detail::RecordOf<Member>> optionalField(std::string_view key) {
    static_assert(detail::OptionalTraits<detail::MemberType<Member>>::isOptional,
                  "an optional field is a std::optional member");
    return {{key, Presence::optional, &detail::readOptional<Member>, &detail::hasValue<Member>,
             &detail::writeOptional<Member>}};
}

template <class Record, class... Rows>
constexpr auto fieldTable(Rows... rows) {
    static_assert((std::is_same_v<Rows, Field<Record>> && ...), "every row must be a field of this record");
    return std::array<FieldDescriptor, sizeof...(Rows)>{rows.descriptor...};
}

// Keys are written verbatim, compared byte-wise and tracked in a 64-bit mask while reading: so a table
// has at most 64 rows, its keys are non-empty ASCII letters and digits, and they ascend strictly.
constexpr bool isValidTable(std::span<const FieldDescriptor> fields) {
    if (fields.size() > 64) return false;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const std::string_view key = fields[i].key;
        if (key.empty()) return false;
        for (const char c : key) {
            const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
            if (!plain) return false;
        }
        if (i > 0 && !(fields[i - 1].key < key)) return false;
    }
    return true;
}

// Reads a JSON object into `record` (freshly default-constructed) by its table. Each member of the
// object is matched to its row once, so the cost is linear in the object's size. Unknown keys are
// ignored; a null counts as missing; a key of the table that appears twice fails, so that no reading
// of the document depends on which duplicate a parser keeps.
bool readObject(const rapidjson::Value& value, void* record, std::span<const FieldDescriptor> fields,
                JsonFailure& failure);

// Writes `record` as an object in table order, omitting empty optional members.
bool writeObject(JsonWriter& writer, const void* record, std::span<const FieldDescriptor> fields,
                 JsonFailure& failure);

}  // namespace kestrum::json
