#include "core/json/JsonWriter.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace kestrum::json {

namespace {

// What the writer does with each byte: copy it, escape it, or start checking a multi-byte sequence.
enum class ByteClass : std::uint8_t { plain, escape, multiByte };

constexpr std::array<ByteClass, 256> makeByteClasses() {
    std::array<ByteClass, 256> classes{};
    for (int byte = 0; byte < 256; ++byte) {
        if (byte < 0x20 || byte == '"' || byte == '\\' || byte == '/') {
            classes[byte] = ByteClass::escape;
        } else if (byte >= 0x80) {
            classes[byte] = ByteClass::multiByte;
        }
    }
    return classes;
}

constexpr auto kByteClasses = makeByteClasses();

// Length of the well-formed UTF-8 sequence starting at `text[0]` (a byte >= 0x80), or 0 when it is
// malformed: overlong forms, surrogates and code points above U+10FFFF are rejected, as the reader
// rejects them.
std::size_t utf8SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const auto isContinuation = [&](std::size_t i) { return i < text.size() && (byte(i) & 0xC0) == 0x80; };
    const unsigned char lead = byte(0);
    if (lead >= 0xC2 && lead <= 0xDF) return isContinuation(1) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF) {
        if (!isContinuation(1) || !isContinuation(2)) return 0;
        if (lead == 0xE0 && byte(1) < 0xA0) return 0;   // overlong
        if (lead == 0xED && byte(1) >= 0xA0) return 0;  // UTF-16 surrogate
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        if (!isContinuation(1) || !isContinuation(2) || !isContinuation(3)) return 0;
        if (lead == 0xF0 && byte(1) < 0x90) return 0;   // overlong
        if (lead == 0xF4 && byte(1) >= 0x90) return 0;  // above U+10FFFF
        return 4;
    }
    return 0;
}

void appendEscape(std::string& out, unsigned char byte) {
    switch (byte) {
        case '"':
            out.append("\\\"");
            return;
        case '\\':
            out.append("\\\\");
            return;
        case '/':
            out.append("\\/");
            return;
        case '\b':
            out.append("\\b");
            return;
        case '\f':
            out.append("\\f");
            return;
        case '\n':
            out.append("\\n");
            return;
        case '\r':
            out.append("\\r");
            return;
        case '\t':
            out.append("\\t");
            return;
        default:
            break;
    }
    static constexpr char kHex[] = "0123456789abcdef";
    const char escape[] = {'\\', 'u', '0', '0', kHex[byte >> 4], kHex[byte & 0xF]};
    out.append(escape, sizeof escape);
}

}  // namespace

void JsonWriter::key(std::string_view key) {
    out_.push_back('"');
    out_.append(key);
    out_.append("\":", 2);
}

void JsonWriter::writeInt64(std::int64_t value) {
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out_.append(buffer, result.ptr);
}

bool JsonWriter::writeDouble(double value) {
    if (!std::isfinite(value)) return false;
    if (value == 0 && std::signbit(value)) {
        out_.append("-0.0");
        return true;
    }
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out_.append(buffer, result.ptr);
    return true;
}

bool JsonWriter::writeString(std::string_view utf8) {
    out_.push_back('"');
    std::size_t runStart = 0;
    std::size_t i = 0;
    while (i < utf8.size()) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        switch (kByteClasses[byte]) {
            case ByteClass::plain:
                ++i;
                break;
            case ByteClass::escape:
                out_.append(utf8.data() + runStart, i - runStart);
                appendEscape(out_, byte);
                runStart = ++i;
                break;
            case ByteClass::multiByte: {
                const std::size_t length = utf8SequenceLength(utf8.substr(i));
                if (length == 0) return false;
                i += length;
                break;
            }
        }
    }
    out_.append(utf8.data() + runStart, utf8.size() - runStart);
    out_.push_back('"');
    return true;
}

bool isWellFormedUtf8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        if (static_cast<unsigned char>(text[i]) < 0x80) {
            ++i;
            continue;
        }
        const std::size_t length = utf8SequenceLength(text.substr(i));
        if (length == 0) return false;
        i += length;
    }
    return true;
}

}  // namespace kestrum::json
