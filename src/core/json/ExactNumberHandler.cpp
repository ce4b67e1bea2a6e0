#include "core/json/ExactNumberHandler.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

namespace kestrum::json {

namespace {

// Decimal order of magnitude of a valid JSON number text whose conversion overflowed or underflowed:
// positive for a huge value, negative or zero for a tiny one. Only its sign is used.
long long magnitudeOf(std::string_view text) {
    std::size_t i = text.starts_with('-') ? 1 : 0;
    long long magnitude = 0;
    bool seenNonZero = false;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        seenNonZero = seenNonZero || text[i] != '0';
        if (seenNonZero) ++magnitude;
    }
    if (i < text.size() && text[i] == '.') {
        for (++i; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
            if (seenNonZero) continue;
            if (text[i] != '0')
                seenNonZero = true;
            else
                --magnitude;
        }
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        const bool negative = i < text.size() && text[i] == '-';
        if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
        long long exponent = 0;
        for (; i < text.size(); ++i) exponent = std::min(exponent * 10 + (text[i] - '0'), 1'000'000'000LL);
        magnitude += negative ? -exponent : exponent;
    }
    return magnitude;
}

}  // namespace

bool ExactNumberHandler::readDouble(const char* text, rapidjson::SizeType length) {
    const char* const end = text + length;
    double value = 0;
    const auto result = std::from_chars(text, end, value, std::chars_format::general);
    if (result.ec == std::errc{} && result.ptr == end) return document_.Double(value);
    if (result.ec == std::errc::result_out_of_range && magnitudeOf(std::string_view(text, length)) <= 0) {
        return document_.Double(*text == '-' ? -0.0 : 0.0);
    }
    numberTooBig_ = true;
    return false;
}

}  // namespace kestrum::json
