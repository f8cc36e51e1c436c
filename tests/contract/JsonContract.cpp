#include "platform/linux/http/JsonParser.h"
#include "platform/memory/JsonParser.h"

#include <gtest/gtest.h>
#include <limits>

// What every reader of JSON promises.

namespace {

using platform::JsonValue;
using namespace std::string_literals;

template <class Parser>
class JsonContract : public testing::Test {
  protected:
    const JsonValue* member(std::string_view text) {
        read = parser.parse(text);
        return read ? read->member("a") : nullptr;
    }

    Parser parser;
    std::optional<JsonValue> read;
};

using Parsers = testing::Types<platform::memory::JsonParser, platform::linux::JsonParser>;
TYPED_TEST_SUITE(JsonContract, Parsers);

TYPED_TEST(JsonContract, KeepsEveryTypeApart) {
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
        const JsonValue* found = this->member(R"({"a":)" + std::string(text) + "}");
        ASSERT_NE(found, nullptr) << text;
        EXPECT_EQ(*found, value) << text;
    }
}

TYPED_TEST(JsonContract, TakesBlanksAroundTheRoot) {
    EXPECT_NE(this->member(" \t\r\n{ \"a\" : 1 } \n"), nullptr);
    EXPECT_EQ(this->parser.parse(" [ ] "), JsonValue{JsonValue::List{}});
}

TYPED_TEST(JsonContract, CountsTheLastOfTheMembersWithOneName) {
    const JsonValue* found = this->member(R"({"a":1,"b":2,"a":3})");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(*found, JsonValue{std::int64_t{3}});
}

TYPED_TEST(JsonContract, HasNoMembersInAnythingButAnObject) {
    EXPECT_EQ(this->member("{}"), nullptr);
    EXPECT_EQ(this->member(R"([{"a":1}])"), nullptr);
}

TYPED_TEST(JsonContract, RefusesWhatIsNotAListOrAnObject) {
    for (const char* text : {"", " ", "1", "\"a\"", "null", "true", "NULL"})
        EXPECT_EQ(this->parser.parse(text), std::nullopt) << text;
}

TYPED_TEST(JsonContract, RefusesWhatIsNotJson) {
    const std::string texts[] = {
        "{",         "}",           "{}x",           "{}{}",       "{} //",    "{'a':1}",
        "{a:1}",     R"({"a":1,})", "[1,]",          "[01]",       "[1.]",     "[.5]",
        "[+1]",      "[0x1]",       "[NaN]",         "[Infinity]", "[1e999]",  "[\"\n\"]",
        "[\"\\x\"]", "[\"\\u12\"]", "[\"\\ud800\"]", "[\"a]",      "[tru]",    "{\"a\"}",
        "{\"a\":}",  "{1:2}",       "{}\0"s,         "{\0}"s,      "[\"\0\"]"s};
    for (const auto& text : texts)
        EXPECT_EQ(this->parser.parse(text), std::nullopt) << text;
}

TYPED_TEST(JsonContract, RefusesTextsThatAreNotUtf8) {
    for (const char* bytes :
         {"\xff", "\xc3", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80", "\xe2\x82"})
        EXPECT_EQ(this->parser.parse("[\"" + std::string(bytes) + "\"]"), std::nullopt);
}

TYPED_TEST(JsonContract, ReadsToItsDepthAndNoDeeper) {
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
        EXPECT_NE(this->parser.parse(nested(platform::Json::deepest, open, close)), std::nullopt);
        EXPECT_EQ(this->parser.parse(nested(platform::Json::deepest + 1, open, close)),
                  std::nullopt);
        EXPECT_EQ(this->parser.parse(nested(200000, open, close)), std::nullopt);
    }
}

} // namespace
