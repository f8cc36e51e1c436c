#include "platform/json/Parser.h"

#include <gtest/gtest.h>
#include <limits>

// What the reader of JSON promises, to those who must not know it and to those who ask why.

namespace {

using platform::JsonValue;
using namespace std::string_literals;

class JsonContract : public testing::Test {
  protected:
    const JsonValue* member(std::string_view text) {
        read = parser.parse(text);
        return read ? read->member("a") : nullptr;
    }

    platform::json::Parser parser;
    std::optional<JsonValue> read;
};

TEST_F(JsonContract, KeepsEveryTypeApart) {
    const std::pair<const char*, JsonValue> rows[] = {
        {"null", {}},
        {"true", {true}},
        {"false", {false}},
        {"1", {std::int64_t{1}}},
        {"-9223372036854775808", {std::numeric_limits<std::int64_t>::min()}},
        {"9223372036854775807", {std::numeric_limits<std::int64_t>::max()}},
        {"9223372036854775808", {9223372036854775808.0}},
        {"99999999999999999999", {1e20}},
        {"1.0", {1.0}},
        {"-2.5e-3", {-0.0025}},
        {R"("")", {""s}},
        {R"("1")", {"1"s}},
        {R"("\u00e8\n\"\\\/\ud83d\ude00")", {"è\n\"\\/😀"s}},
        {R"("è😀")", {"è😀"s}},
        {R"("\u0000")", {"\0"s}},
        {"[]", {JsonValue::List{}}},
        {"[1,[true],{}]",
         {JsonValue::List{{std::int64_t{1}}, {JsonValue::List{{true}}}, {JsonValue::Object{}}}}},
        {R"({"":null})", {JsonValue::Object{{"", {}}}}}};
    for (const auto& [text, value] : rows) {
        const JsonValue* found = member(R"({"a":)" + std::string(text) + "}");
        ASSERT_NE(found, nullptr) << text;
        EXPECT_EQ(*found, value) << text;
    }
}

TEST_F(JsonContract, TakesBlanksAroundTheRoot) {
    EXPECT_NE(member(" \t\r\n{ \"a\" : 1 } \n"), nullptr);
    EXPECT_EQ(parser.parse(" [ ] "), JsonValue{JsonValue::List{}});
}

TEST_F(JsonContract, CountsTheLastOfTheMembersWithOneName) {
    const JsonValue* found = member(R"({"a":1,"b":2,"a":3})");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(*found, JsonValue{std::int64_t{3}});
}

TEST_F(JsonContract, HasNoMembersInAnythingButAnObject) {
    EXPECT_EQ(member("{}"), nullptr);
    EXPECT_EQ(member(R"([{"a":1}])"), nullptr);
}

TEST_F(JsonContract, RefusesWhatIsNotAListOrAnObject) {
    for (const char* text : {"", " ", "1", "\"a\"", "null", "true", "NULL"})
        EXPECT_EQ(parser.parse(text), std::nullopt) << text;
}

TEST_F(JsonContract, RefusesWhatIsNotJson) {
    const std::string texts[] = {
        "{",         "}",           "{}x",           "{}{}",       "{} //",    "{'a':1}",
        "{a:1}",     R"({"a":1,})", "[1,]",          "[01]",       "[1.]",     "[.5]",
        "[+1]",      "[0x1]",       "[NaN]",         "[Infinity]", "[1e999]",  "[\"\n\"]",
        "[\"\\x\"]", "[\"\\u12\"]", "[\"\\ud800\"]", "[\"a]",      "[tru]",    "{\"a\"}",
        "{\"a\":}",  "{1:2}",       "{}\0"s,         "{\0}"s,      "[\"\0\"]"s};
    for (const auto& text : texts)
        EXPECT_EQ(parser.parse(text), std::nullopt) << text;
}

TEST_F(JsonContract, RefusesTextsThatAreNotUtf8) {
    for (const char* bytes :
         {"\xff", "\xc3", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80", "\xe2\x82"})
        EXPECT_EQ(parser.parse("[\"" + std::string(bytes) + "\"]"), std::nullopt);
}

TEST_F(JsonContract, ReadsToItsDepthAndNoDeeper) {
    const auto nested = [](std::size_t depth, const char* open, const char* close) {
        std::string text;
        for (std::size_t level = 1; level < depth; ++level)
            text += open;
        text += "[]";
        for (std::size_t level = 1; level < depth; ++level)
            text += close;
        return text;
    };
    for (const auto& [open, close] : {std::pair{"[", "]"}, std::pair{"{\"a\":", "}"}}) {
        EXPECT_NE(parser.parse(nested(platform::Json::deepest, open, close)), std::nullopt);
        EXPECT_EQ(parser.parse(nested(platform::Json::deepest + 1, open, close)), std::nullopt);
        EXPECT_EQ(parser.parse(nested(200000, open, close)), std::nullopt);
    }
}

TEST(JsonReading, TakesAnyValueAsItsRoot) {
    EXPECT_EQ(platform::json::read("7", 0), JsonValue{std::int64_t{7}});
    EXPECT_EQ(platform::json::read(" null ", 0), JsonValue{});
}

TEST(JsonReading, SaysWhyAndWhereItStopped) {
    const std::tuple<std::string, std::size_t, const char*> rows[] = {
        {"nonsense", 1, "not JSON at byte 2"},
        {"{}{}", 1, "not JSON at byte 3"},
        {"", 1, "not JSON at byte 1"},
        {"[]\0[]"s, 1, "not JSON at byte 3"},
        {"\0"s, 1, "not JSON at byte 1"},
        {"[1e999]", 1, "not JSON that can be read: a number is too large"},
        {"[[]]", 1, "not JSON that can be read: it is nested too deeply"}};
    for (const auto& [text, deepest, why] : rows) {
        try {
            platform::json::read(text, deepest);
            ADD_FAILURE() << text << " is read";
        } catch (const platform::json::ParseError& error) {
            EXPECT_STREQ(error.what(), why) << text;
        }
    }
}

} // namespace
