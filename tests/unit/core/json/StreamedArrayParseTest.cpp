#include "core/json/JsonDocument.h"
#include "core/json/StreamedArrayParse.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kestrum::json {
namespace {

std::string written(const rapidjson::Value& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return buffer.GetString();
}

struct StreamCase {
    const char* name;
    std::string json;
    // What the document holds afterwards, and the elements handed over, each as written; or, for a
    // document that fails, the failure, which must read as parseJson's own.
    std::string document;
    std::vector<std::string> elements;
};

TEST(StreamedArrayParse, HandsOverTheElementsAndKeepsTheRest) {
    const std::vector<StreamCase> cases{
        {"elements of every kind",
         R"({"a":1,"s":[{"x":[1,{"y":null}]},[2],-3,2.5,"t",true,null],"b":{"s":[9]}})",
         R"({"a":1,"s":[],"b":{"s":[9]}})",
         {R"({"x":[1,{"y":null}]})", "[2]", "-3", "2.5", R"("t")", "true", "null"}},
        {"numbers read exactly",
         R"({"s":[18446744073709551615,-9223372036854775808,0.1]})",
         R"({"s":[]})",
         {"18446744073709551615", "-9223372036854775808", "0.1"}},
        {"an empty array", R"({"s":[]})", R"({"s":[]})", {}},
        {"a value that is no array stays", R"({"s":{"x":[1]}})", R"({"s":{"x":[1]}})", {}},
        {"a root that is no object streams nothing", R"([{"s":[1]}])", R"([{"s":[1]}])", {}},
        {"the key twice: both arrays streamed, both kept empty",
         R"({"s":[1],"s":[2]})",
         R"({"s":[],"s":[]})",
         {"1", "2"}},
        {"a key that only begins alike", R"({"ss":[1],"s2":[2]})", R"({"ss":[1],"s2":[2]})", {}},
    };
    for (const StreamCase& c : cases) {
        SCOPED_TRACE(c.name);
        rapidjson::Document document;
        std::vector<std::string> elements;
        const Status parsed =
            parseJsonStreamingArray(c.json, "s", document, [&](const rapidjson::Value& element) {
                elements.push_back(written(element));
                return true;
            });
        ASSERT_TRUE(parsed.ok()) << parsed.error().description.toStdString();
        EXPECT_EQ(written(document), c.document);
        EXPECT_EQ(elements, c.elements);
    }
}

TEST(StreamedArrayParse, FailsAsTheWholeParseDoes) {
    const std::vector<std::string> broken{
        R"({"s":[1,)",
        R"({"s":[{"x":1e999}]})",
        std::string(R"({"s":[1]})") + '\0' + "x",
        R"({"s":[1]} 2)",
        "{\"s\":[\"\xff\"]}",
        R"({"s":[01]})",
        "",
    };
    for (const std::string& json : broken) {
        SCOPED_TRACE(json);
        rapidjson::Document whole;
        const Status expected = parseJson(json, whole);
        ASSERT_FALSE(expected.ok());
        rapidjson::Document document;
        const Status parsed =
            parseJsonStreamingArray(json, "s", document, [](const rapidjson::Value&) { return true; });
        ASSERT_FALSE(parsed.ok());
        EXPECT_EQ(parsed.error().description, expected.error().description);
        EXPECT_TRUE(document.IsNull());
    }
}

TEST(StreamedArrayParse, AVisitorThatRefusesStopsTheParse) {
    int visited = 0;
    rapidjson::Document document;
    const Status parsed = parseJsonStreamingArray(R"({"s":[1,2,3]})", "s", document,
                                                  [&](const rapidjson::Value&) { return ++visited < 2; });
    EXPECT_FALSE(parsed.ok());
    EXPECT_EQ(visited, 2);
}

}  // namespace
}  // namespace kestrum::json
