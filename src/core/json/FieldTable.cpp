#include "core/json/FieldTable.h"

#include "core/json/JsonValueKind.h"

#include <algorithm>
#include <string>

namespace kestrum::json {

namespace {

constexpr std::size_t kNotFound = static_cast<std::size_t>(-1);

// Documents written by this system list their keys in table order, so the row after the last match is
// tried first; anything else falls back to a binary search of the sorted table.
std::size_t findRow(std::span<const FieldDescriptor> fields, std::string_view key, std::size_t hint) {
    if (hint < fields.size() && fields[hint].key == key) return hint;
    const auto row =
        std::lower_bound(fields.begin(), fields.end(), key,
                         [](const FieldDescriptor& field, std::string_view k) { return field.key < k; });
    if (row == fields.end() || row->key != key) return kNotFound;
    return static_cast<std::size_t>(row - fields.begin());
}

}  // namespace

bool readObject(const rapidjson::Value& value, void* record, std::span<const FieldDescriptor> fields,
                JsonFailure& failure) {
    if (!value.IsObject()) return failure.fail(unexpectedKind("an object", value));
    std::uint64_t seen = 0;
    std::size_t hint = 0;
    for (auto member = value.MemberBegin(); member != value.MemberEnd(); ++member) {
        const std::string_view key(member->name.GetString(), member->name.GetStringLength());
        const std::size_t row = findRow(fields, key, hint);
        if (row == kNotFound) continue;
        hint = row + 1;
        const FieldDescriptor& field = fields[row];
        const std::uint64_t bit = std::uint64_t{1} << row;
        if (seen & bit) {
            failure.fail("duplicate key");
            failure.addKey(field.key);
            return false;
        }
        seen |= bit;
        if (member->value.IsNull()) {
            if (field.presence == Presence::optional) continue;
            failure.fail("required key is null");
            failure.addKey(field.key);
            return false;
        }
        if (!field.read(member->value, record, failure)) {
            failure.addKey(field.key);
            return false;
        }
    }
    for (std::size_t row = 0; row < fields.size(); ++row) {
        if (fields[row].presence == Presence::required && !(seen & (std::uint64_t{1} << row))) {
            failure.fail("missing required key");
            failure.addKey(fields[row].key);
            return false;
        }
    }
    return true;
}

bool writeObject(JsonWriter& writer, const void* record, std::span<const FieldDescriptor> fields,
                 JsonFailure& failure) {
    writer.beginObject();
    bool first = true;
    for (const FieldDescriptor& field : fields) {
        if (field.presence == Presence::optional && !field.isPresent(record)) continue;
        if (!first) writer.comma();
        first = false;
        writer.key(field.key);
        if (!field.write(writer, record, failure)) {
            failure.addKey(field.key);
            return false;
        }
    }
    writer.endObject();
    return true;
}

}  // namespace kestrum::json
