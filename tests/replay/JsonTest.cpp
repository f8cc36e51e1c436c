#include "platform/json/Writer.h"

#include <gtest/gtest.h>

#include <limits>

namespace platform::json {
namespace {

template <class T>
std::string json(const T& value) {
    std::string text;
    writeJson(text, value);
    return text;
}

TEST(JsonNumber, IsTheShortestPlainOneThatReadsBackTheSame) {
    EXPECT_EQ(json(0.1), "0.1");
    EXPECT_EQ(json(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(json(1919.0), "1919");
    EXPECT_EQ(json(-0.5), "-0.5");
    EXPECT_EQ(json(1e21), "1000000000000000000000");
    EXPECT_EQ(json(1e-7), "0.0000001");
    EXPECT_EQ(json(std::numeric_limits<double>::denorm_min()).size(), 326u);
}

TEST(JsonNumber, IsShortForASingleToo) {
    EXPECT_EQ(json(0.35f), "0.35");
    EXPECT_EQ(json(999999.0f), "999999");
    EXPECT_EQ(json(16777216.0f), "16777216");
}

TEST(JsonNumber, KeepsEveryDigitOfAnInteger) {
    EXPECT_EQ(json(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(json(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(json(std::uint16_t{65}), "65");
}

TEST(JsonNumber, IsNullWhereThereIsNone) {
    EXPECT_EQ(json(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(json(std::numeric_limits<float>::quiet_NaN()), "null");
}

TEST(JsonTime, IsWholeNanosecondsAsSeconds) {
    EXPECT_EQ(json(Seconds{0}), "0");
    EXPECT_EQ(json(Seconds{5'000'000}), "0.005");
    EXPECT_EQ(json(Seconds{3'000'000'000}), "3");
    EXPECT_EQ(json(Seconds{1'000'000'001}), "1.000000001");
}

TEST(JsonText, StaysUtf8AndEscapesWhatItMust) {
    EXPECT_EQ(json("è \"\\/\n\t\x01\x1f\x7f"), "\"è \\\"\\\\/\\n\\t\\u0001\\u001f\x7f\"");
}

TEST(JsonValue, KeepsStringsBooleansAndNumbersApart) {
    Dictionary values;
    values["text"] = Value{"1"};
    values["flag"] = Value{true};
    values["number"] = Value{std::int64_t{1}};
    values["data"] = Value{Data{'a', 'b', 'c', 'd'}};
    values["inner"] = Value{Dictionary{}};
    EXPECT_EQ(json(values), R"({"data":"YWJjZA==","flag":true,"inner":{},"number":1,"text":"1"})");
}

TEST(JsonValue, IsNullWhereItIsAbsent) {
    EXPECT_EQ(json(orNull("")), "null");
    EXPECT_EQ(json(orNull("a")), "\"a\"");
}

} // namespace
} // namespace platform::json
