#include "core/json/JsonDocument.h"
#include "core/json/JsonWriter.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace kestrum::json {
namespace {

struct StringCase {
    const char* name;
    std::string input;
    std::string expected;
};

TEST(JsonWriter, EscapesStringsAsASortedKeysOnlyEncoder) {
    const std::vector<StringCase> cases = {
        {"plain", "GameStart", "\"GameStart\""},
        {"quote and backslash", "a\"b\\c", "\"a\\\"b\\\\c\""},
        {"slash", "Solo/Duo", "\"Solo\\/Duo\""},
        {"short escapes", "\b\f\n\r\t", "\"\\b\\f\\n\\r\\t\""},
        {"other controls", std::string("\x00\x01\x1f", 3), "\"\\u0000\\u0001\\u001f\""},
        {"delete stays raw", "\x7f", "\"\x7f\""},
        {"two-byte", "caf\xc3\xa9", "\"caf\xc3\xa9\""},
        {"arrow", "Kayn \xe2\x86\x92 Lux", "\"Kayn \xe2\x86\x92 Lux\""},
        {"line separator stays raw", "\xe2\x80\xa8", "\"\xe2\x80\xa8\""},
        {"four-byte", "\xf0\x9f\x8e\xae", "\"\xf0\x9f\x8e\xae\""},
        {"empty", "", "\"\""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        JsonWriter writer;
        ASSERT_TRUE(writer.writeString(c.input));
        EXPECT_EQ(writer.text(), c.expected);
    }
}

TEST(JsonWriter, RejectsMalformedUtf8) {
    const std::vector<std::pair<const char*, std::string>> cases = {
        {"lone continuation", "a\x80"},
        {"overlong slash", "\xc0\xaf"},
        {"overlong three-byte", "\xe0\x80\xaf"},
        {"truncated at end", "\xe2\x86"},
        {"truncated before ascii", "\xe2\x86z"},
        {"surrogate", "\xed\xa0\x80"},
        {"above U+10FFFF", "\xf4\x90\x80\x80"},
        {"invalid lead", "\xf5\x80\x80\x80"},
        {"lead C1", "\xc1\xbf"},
    };
    for (const auto& [name, input] : cases) {
        SCOPED_TRACE(name);
        JsonWriter writer;
        EXPECT_FALSE(writer.writeString(input));
    }
}

TEST(JsonWriter, WritesNumbersInShortestForm) {
    const std::vector<std::pair<double, std::string>> doubles = {
        {3.4, "3.4"},
        {0.1 + 0.2, "0.30000000000000004"},
        {3.0, "3"},
        {-2.5, "-2.5"},
        {1e21, "1e+21"},
        {5e-324, "5e-324"},
        {0.0, "0"},
        {-0.0, "-0.0"},
        {1650.0000000000002, "1650.0000000000002"},
    };
    for (const auto& [value, expected] : doubles) {
        SCOPED_TRACE(expected);
        JsonWriter writer;
        ASSERT_TRUE(writer.writeDouble(value));
        EXPECT_EQ(writer.text(), expected);
    }
    const std::vector<std::pair<std::int64_t, std::string>> integers = {
        {0, "0"},
        {-1, "-1"},
        {std::numeric_limits<std::int64_t>::max(), "9223372036854775807"},
        {std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
    };
    for (const auto& [value, expected] : integers) {
        JsonWriter writer;
        writer.writeInt64(value);
        EXPECT_EQ(writer.text(), expected);
    }
}

// Whatever bits a finite double has, the reader with the shared parse flags gives back the same bits.
TEST(JsonWriter, DoublesReadBackBitForBit) {
    std::mt19937_64 random(20260314);
    for (int i = 0; i < 20000; ++i) {
        double value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        if (i % 2 == 0)
            value = std::ldexp(value, -static_cast<int>(random() % 40));  // also everyday magnitudes
        JsonWriter writer;
        writer.beginArray();
        ASSERT_TRUE(writer.writeDouble(value));
        writer.endArray();
        rapidjson::Document document;
        ASSERT_TRUE(parseJson(writer.text(), document).ok()) << writer.text();
        EXPECT_EQ(std::bit_cast<std::uint64_t>(document[0].GetDouble()), std::bit_cast<std::uint64_t>(value))
            << writer.text();
    }
}

}  // namespace
}  // namespace kestrum::json
