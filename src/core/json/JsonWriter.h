#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrum::json {

// Whether `text` is well-formed UTF-8 by the same rule the writer applies (no overlong forms, no
// surrogates, nothing above U+10FFFF). The reader applies it to every decoded string, because the
// parser lets an escaped lone surrogate such as "\udc00" through as bytes no writer may emit.
bool isWellFormedUtf8(std::string_view text);

// Appends compact JSON text to one growing buffer: no whitespace, integers without a fraction,
// doubles in their shortest round-trip form, strings escaped as a standard encoder does with only the
// sorted-keys option set (`"`, `\` and `/` escaped, control characters as \b \f \n \r \t or \u00xx,
// everything else raw UTF-8). Separators are the caller's business: the codecs know when an element
// or a field follows another. Not thread-safe; one writer per document.
class JsonWriter {
  public:
    void reserve(std::size_t bytes) { out_.reserve(bytes); }

    void beginObject() { out_.push_back('{'); }
    void endObject() { out_.push_back('}'); }
    void beginArray() { out_.push_back('['); }
    void endArray() { out_.push_back(']'); }
    void comma() { out_.push_back(','); }

    // Writes `"key":`. Keys are plain ASCII names taken from the field tables, which are checked for
    // that at compile time, so they need no escaping.
    void key(std::string_view key);

    void writeInt64(std::int64_t value);
    void writeBool(bool value) { out_.append(value ? "true" : "false"); }
    // Writes nothing and returns false when `value` is NaN or infinite: JSON has no form for them.
    // Negative zero is written "-0.0", because "-0" would read back as the integer 0.
    bool writeDouble(double value);
    // Returns false, leaving the buffer in an unspecified state, when `utf8` is not valid UTF-8; a
    // document that the strict reader could not read back is never produced.
    bool writeString(std::string_view utf8);

    const std::string& text() const& { return out_; }
    std::string take() && { return std::move(out_); }

  private:
    std::string out_;
};

}  // namespace kestrum::json
