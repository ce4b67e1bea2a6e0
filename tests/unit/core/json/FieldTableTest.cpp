#include "core/json/FieldTable.h"
#include "core/json/JsonDocument.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kestrum::json {

struct Lap {
    double seconds = 0;
    std::optional<std::string> note;

    friend bool operator==(const Lap&, const Lap&) = default;
};

struct Race {
    std::string name;
    std::vector<Lap> laps;
    std::optional<std::int64_t> rank;
    std::optional<Lap> best;

    friend bool operator==(const Race&, const Race&) = default;
};

template <>
struct FieldTable<Lap> {
    static constexpr auto fields =
        fieldTable<Lap>(optionalField<&Lap::note>("note"), requiredField<&Lap::seconds>("seconds"));
};

template <>
struct FieldTable<Race> {
    static constexpr auto fields =
        fieldTable<Race>(optionalField<&Race::best>("best"), requiredField<&Race::laps>("laps"),
                         requiredField<&Race::name>("name"), optionalField<&Race::rank>("rank"));
};

namespace {

struct ObjectCase {
    const char* name;
    const char* json;
    std::optional<Race> expected;
    const char* failure;
};

TEST(FieldTable, ReadsObjectsByTheirTable) {
    const Race minimal{"Monaco", {}, std::nullopt, std::nullopt};
    const Race full{"Spa", {{104.5, "wet"}, {101.25, std::nullopt}}, 3, Lap{101.25, std::nullopt}};
    const std::vector<ObjectCase> cases = {
        {"minimal", R"({"laps":[],"name":"Monaco"})", minimal, ""},
        {"every key, any order",
         R"({"rank":3,"name":"Spa","best":{"seconds":101.25},"laps":[{"seconds":104.5,"note":"wet"},{"seconds":101.25}]})",
         full, ""},
        {"unknown keys ignored, even twice", R"({"x":1,"laps":[],"x":{"y":[null]},"name":"Monaco"})", minimal,
         ""},
        {"null optional is absent", R"({"best":null,"laps":[],"name":"Monaco","rank":null})", minimal, ""},
        {"missing required", R"({"laps":[]})", std::nullopt, "name: missing required key"},
        {"null required", R"({"laps":null,"name":"Monaco"})", std::nullopt, "laps: required key is null"},
        {"duplicate known key", R"({"laps":[],"name":"a","name":"b"})", std::nullopt, "name: duplicate key"},
        {"duplicate known key, once null", R"({"rank":null,"laps":[],"name":"a","rank":2})", std::nullopt,
         "rank: duplicate key"},
        {"nested missing", R"({"laps":[{"seconds":1},{"note":"x"}],"name":"a"})", std::nullopt,
         "laps[1].seconds: missing required key"},
        {"nested wrong kind", R"({"best":{"seconds":1,"note":2},"laps":[],"name":"a"})", std::nullopt,
         "best.note: expected a string, found a number"},
        {"optional with wrong kind", R"({"laps":[],"name":"a","rank":"first"})", std::nullopt,
         "rank: expected an integer, found a string"},
        {"not an object", R"([{"laps":[],"name":"a"}])", std::nullopt,
         "(root): expected an object, found an array"},
        {"element not an object", R"({"laps":[7],"name":"a"})", std::nullopt,
         "laps[0]: expected an object, found a number"},
        {"key differing in case only", R"({"laps":[],"Name":"a"})", std::nullopt,
         "name: missing required key"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Result<Race> race = decodeDocument<Race>(c.json);
        if (c.expected) {
            ASSERT_TRUE(race.ok()) << race.error().description.toStdString();
            EXPECT_EQ(race.value(), *c.expected);
        } else {
            ASSERT_FALSE(race.ok());
            EXPECT_EQ(race.error().description.toStdString(), c.failure);
        }
    }
}

TEST(FieldTable, WritesTableOrderAndOmitsAbsentValues) {
    const std::vector<std::pair<Race, std::string>> cases = {
        {{"Monaco", {}, std::nullopt, std::nullopt}, R"({"laps":[],"name":"Monaco"})"},
        {{"Spa", {{104.5, "wet"}, {101.25, std::nullopt}}, 3, Lap{101.25, std::nullopt}},
         R"({"best":{"seconds":101.25},"laps":[{"note":"wet","seconds":104.5},{"seconds":101.25}],"name":"Spa","rank":3})"},
        {{"", {}, 0, Lap{0, ""}}, R"({"best":{"note":"","seconds":0},"laps":[],"name":"","rank":0})"},
    };
    for (const auto& [race, expected] : cases) {
        SCOPED_TRACE(expected);
        const Result<std::string> text = encodeDocument(race);
        ASSERT_TRUE(text.ok());
        EXPECT_EQ(text.value(), expected);
        const Result<Race> back = decodeDocument<Race>(text.value());
        ASSERT_TRUE(back.ok());
        EXPECT_EQ(back.value(), race);
    }
}

TEST(FieldTable, ValidTablesAreSortedPlainAndSmall) {
    const auto table = [](std::vector<std::string_view> keys) {
        std::vector<FieldDescriptor> rows;
        for (const auto key : keys) rows.push_back({key, Presence::required, nullptr, nullptr, nullptr});
        return rows;
    };
    std::vector<std::string_view> many;
    const std::vector<std::string> names = [] {
        std::vector<std::string> list;
        for (int i = 0; i < 65; ++i)
            list.push_back("k" + std::string(1, static_cast<char>('A' + i / 26)) +
                           std::string(1, static_cast<char>('a' + i % 26)));
        return list;
    }();
    for (const auto& name : names) many.push_back(name);
    const std::vector<std::pair<const char*, std::vector<std::string_view>>> invalid = {
        {"descending", {"b", "a"}},
        {"repeated", {"a", "a"}},
        {"byte order puts capitals first", {"riotIdTagline", "riotIdTagLine"}},
        {"empty key", {"", "a"}},
        {"needs escaping", {"a/b"}},
        {"space", {"a b"}},
        {"more than 64 rows", many},
    };
    for (const auto& [name, keys] : invalid) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(isValidTable(table(keys)));
    }
    many.pop_back();
    EXPECT_TRUE(isValidTable(table(many)));
    EXPECT_TRUE(
        isValidTable(table({"position", "positionQuestCompleted", "riotIdTagLine", "riotIdTagline"})));
    EXPECT_TRUE(isValidTable(FieldTable<Race>::fields));
}

}  // namespace
}  // namespace kestrum::json
