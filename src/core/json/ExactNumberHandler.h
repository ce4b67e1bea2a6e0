#pragma once

#include <rapidjson/document.h>

#include <charconv>
#include <cstdint>
#include <system_error>

namespace kestrum::json {

// Forwards the reader's events to the document and turns each number's text into its value with
// std::from_chars: integers exactly, doubles correctly rounded (so a double written in shortest form
// reads back bit for bit). RapidJSON 1.1.0's own exact mode reads "0e77" as garbage, hence this.
class ExactNumberHandler {
  public:
    explicit ExactNumberHandler(rapidjson::Document& document) : document_(document) {}

    bool Null() { return document_.Null(); }
    bool Bool(bool value) { return document_.Bool(value); }
    bool Int(int value) { return document_.Int(value); }
    bool Uint(unsigned value) { return document_.Uint(value); }
    bool Int64(std::int64_t value) { return document_.Int64(value); }
    bool Uint64(std::uint64_t value) { return document_.Uint64(value); }
    bool Double(double value) { return document_.Double(value); }
    bool String(const char* text, rapidjson::SizeType length, bool copy) {
        return document_.String(text, length, copy);
    }
    bool StartObject() { return document_.StartObject(); }
    bool Key(const char* text, rapidjson::SizeType length, bool copy) {
        return document_.Key(text, length, copy);
    }
    bool EndObject(rapidjson::SizeType members) { return document_.EndObject(members); }
    bool StartArray() { return document_.StartArray(); }
    bool EndArray(rapidjson::SizeType elements) { return document_.EndArray(elements); }

    // Converts one number's text, which the reader has checked against the JSON grammar. Fails (ending
    // the parse) only for a value too large for a double; a value too small for one reads as zero.
    // Integers, the common case, are read here; fractions and exponents go to readDouble.
    bool RawNumber(const char* text, rapidjson::SizeType length, bool) {
        const char* const end = text + length;
        // An integer text is read whole as an integer; a fraction or an exponent stops the integer
        // read early and sends the text to the double conversion.
        std::int64_t signedValue = 0;
        const auto integer = std::from_chars(text, end, signedValue);
        if (integer.ptr == end) {
            if (integer.ec == std::errc{}) {
                return *text == '-' ? document_.Int64(signedValue)
                                    : document_.Uint64(static_cast<std::uint64_t>(signedValue));
            }
            std::uint64_t unsignedValue = 0;
            if (*text != '-' && std::from_chars(text, end, unsignedValue).ec == std::errc{}) {
                return document_.Uint64(unsignedValue);
            }
        }
        return readDouble(text, length);
    }

    bool numberTooBig() const { return numberTooBig_; }

  private:
    bool readDouble(const char* text, rapidjson::SizeType length);

    rapidjson::Document& document_;
    bool numberTooBig_ = false;
};

}  // namespace kestrum::json
