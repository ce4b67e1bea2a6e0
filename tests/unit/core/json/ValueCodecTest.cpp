#include "core/json/JsonDocument.h"
#include "core/json/ValueCodec.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace kestrum::json {

enum class Weather : std::uint8_t { sunny, rainy, fogBank };

template <>
struct EnumTexts<Weather> {
    static constexpr std::array<std::string_view, 3> texts{"sunny", "rainy", "fogBank"};
};

namespace {

// Reads `json` as a T: the value, or the failure's description.
template <class T>
struct ReadOutcome {
    std::optional<T> value;
    std::string description;
};

template <class T>
ReadOutcome<T> readAs(const std::string& json) {
    rapidjson::Document document;
    if (!parseJson(json, document).ok()) return {std::nullopt, "unparsable test input"};
    T value{};
    JsonFailure failure;
    if (!ValueCodec<T>::read(document, value, failure)) return {std::nullopt, failure.description()};
    return {value, {}};
}

template <class T>
std::string written(const T& value) {
    JsonWriter writer;
    JsonFailure failure;
    if (!ValueCodec<T>::write(writer, value, failure)) return "failed: " + failure.description();
    return std::move(writer).take();
}

struct IntegerCase {
    const char* json;
    std::optional<std::int64_t> expected;
    const char* failure;
};

TEST(ValueCodec, IntegersAcceptExactValuesInRangeOnly) {
    constexpr auto kMax = std::numeric_limits<std::int64_t>::max();
    constexpr auto kMin = std::numeric_limits<std::int64_t>::min();
    const std::vector<IntegerCase> cases = {
        {"1", 1, ""},
        {"1.0", 1, ""},
        {"-0", 0, ""},
        {"-0.0", 0, ""},
        {"1e2", 100, ""},
        {"9223372036854775807", kMax, ""},
        {"-9223372036854775808", kMin, ""},
        {"-9.2233720368547758e18", kMin, ""},
        {"9223372036854775808", std::nullopt, "(root): integer out of range"},
        {"9.3e18", std::nullopt, "(root): integer out of range"},
        {"-9.3e18", std::nullopt, "(root): integer out of range"},
        {"1.5", std::nullopt, "(root): expected an integer, found a fraction"},
        {"1e-1", std::nullopt, "(root): expected an integer, found a fraction"},
        {"\"1\"", std::nullopt, "(root): expected an integer, found a string"},
        {"true", std::nullopt, "(root): expected an integer, found a boolean"},
        {"null", std::nullopt, "(root): expected an integer, found null"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        const auto outcome = readAs<std::int64_t>(c.json);
        EXPECT_EQ(outcome.value, c.expected);
        EXPECT_EQ(outcome.description, c.failure);
    }
}

TEST(ValueCodec, ScalarsAcceptOnlyTheirJsonKind) {
    EXPECT_EQ(readAs<double>("7").value, 7.0);
    EXPECT_EQ(readAs<double>("-1.25e-3").value, -1.25e-3);
    // Number texts are converted exactly, including forms that RapidJSON 1.1.0 itself misreads.
    const std::vector<std::pair<const char*, double>> exact = {
        {"0e77", 0.0},
        {"-0e91", -0.0},
        {"0.0e300", 0.0},
        {"0E+308", 0.0},
        {"1e-400", 0.0},
        {"-1e-400", -0.0},
        {"4.9e-324", 5e-324},
        {"0.1", 0.1},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"123456789012345678901234567890", 1.2345678901234568e29},
    };
    for (const auto& [text, expected] : exact) {
        SCOPED_TRACE(text);
        const auto value = readAs<double>(text).value;
        ASSERT_TRUE(value);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(*value), std::bit_cast<std::uint64_t>(expected));
    }
    EXPECT_EQ(readAs<std::int64_t>("0e77").value, 0);
    EXPECT_EQ(readAs<double>("1e309").description, "unparsable test input");
    EXPECT_EQ(readAs<double>("1" + std::string(400, '0')).description, "unparsable test input");
    EXPECT_EQ(readAs<double>("0.000e400").description,
              "unparsable test input");  // the tokenizer's exponent limit
    EXPECT_EQ(readAs<double>("\"7\"").description, "(root): expected a number, found a string");
    EXPECT_EQ(readAs<bool>("true").value, true);
    EXPECT_EQ(readAs<bool>("false").value, false);
    EXPECT_EQ(readAs<bool>("1").description, "(root): expected a boolean, found a number");
    EXPECT_EQ(readAs<bool>("\"true\"").description, "(root): expected a boolean, found a string");
    EXPECT_EQ(readAs<std::string>("\"a\\u0000b\\/c\"").value, std::string("a\0b/c", 5));
    EXPECT_EQ(readAs<std::string>("[]").description, "(root): expected a string, found an array");
    EXPECT_EQ(readAs<ReferenceDate>("795305275.125").value, ReferenceDate{795305275.125});
    EXPECT_FALSE(readAs<ReferenceDate>("\"2026-03-14\"").value);
}

TEST(ValueCodec, UuidsMustBeCanonical) {
    const QUuid expected = QUuid::fromString(QStringLiteral("7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A11"));
    const std::vector<std::pair<const char*, bool>> cases = {
        {"\"7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A11\"", true},
        {"\"7c1f0d7a-52ab-4e0e-8c56-0b8f3e1b6a11\"", true},
        {"\"{7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A11}\"", false},
        {"\"7C1F0D7A52AB4E0E8C560B8F3E1B6A11\"", false},
        {"\"7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A1\"", false},
        {"\"7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A1G\"", false},
        {"\"7C1F0D7A-52AB4-E0E-8C56-0B8F3E1B6A11\"", false},
        {"\"not-a-uuid\"", false},
    };
    for (const auto& [json, valid] : cases) {
        SCOPED_TRACE(json);
        const auto outcome = readAs<QUuid>(json);
        if (valid) {
            EXPECT_EQ(outcome.value, expected);
        } else {
            EXPECT_EQ(outcome.description, "(root): invalid UUID");
        }
    }
    EXPECT_EQ(readAs<QUuid>("12").description, "(root): expected a UUID string, found a number");
    EXPECT_EQ(written(expected), "\"7C1F0D7A-52AB-4E0E-8C56-0B8F3E1B6A11\"");
}

TEST(ValueCodec, EnumerationsUseTheirStoredTexts) {
    const std::vector<std::pair<const char*, Weather>> known = {
        {"\"sunny\"", Weather::sunny}, {"\"rainy\"", Weather::rainy}, {"\"fogBank\"", Weather::fogBank}};
    for (const auto& [json, value] : known) {
        SCOPED_TRACE(json);
        EXPECT_EQ(readAs<Weather>(json).value, value);
        EXPECT_EQ(written(value), json);
    }
    for (const char* json : {"\"Sunny\"", "\"fogbank\"", "\"\"", "\"sunny \""}) {
        SCOPED_TRACE(json);
        EXPECT_EQ(readAs<Weather>(json).description.rfind("(root): unknown enumeration text", 0), 0u);
    }
    EXPECT_EQ(readAs<Weather>("0").description, "(root): expected a string, found a number");
    EXPECT_EQ(written(static_cast<Weather>(3)), "failed: (root): no stored text for enumeration value 3");
}

TEST(ValueCodec, ArraysNameTheFailingIndex) {
    EXPECT_EQ(readAs<std::vector<std::int64_t>>("[1,2.0,3]").value, (std::vector<std::int64_t>{1, 2, 3}));
    EXPECT_EQ(readAs<std::vector<std::int64_t>>("[1,2,null]").description,
              "[2]: expected an integer, found null");
    EXPECT_EQ(readAs<std::vector<std::vector<std::string>>>("[[],[\"a\",1]]").description,
              "[1][1]: expected a string, found a number");
    EXPECT_EQ(readAs<std::vector<std::int64_t>>("{}").description,
              "(root): expected an array, found an object");
    EXPECT_EQ(written(std::vector<std::vector<double>>{{}, {1.5, 2}}), "[[],[1.5,2]]");
    EXPECT_EQ(written(std::vector<double>{1, std::numeric_limits<double>::infinity()}),
              "failed: [1]: non-finite number cannot be written (inf)");
}

}  // namespace
}  // namespace kestrum::json
