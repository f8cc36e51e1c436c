#include "platform/Value.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

struct Reading {
    Value value;
    bool asBool;
    int asInt;
};

TEST(Value, ReadsAsABooleanAndAsANumberByItsType) {
    const Reading readings[] = {
        {Value{"1"}, true, 1},
        {Value{"0"}, false, 0},
        {Value{""}, false, 0},
        {Value{"YES"}, true, 0},
        {Value{"true"}, true, 0},
        {Value{"no"}, false, 0},
        {Value{" -007 s"}, true, -7},
        {Value{"+12abc"}, true, 12},
        {Value{"000"}, false, 0},
        {Value{"abc"}, false, 0},
        {Value{"99999999999999999999"}, true, 2147483647},
        {Value{"-99999999999999999999"}, true, -2147483647 - 1},
        {Value{true}, true, 1},
        {Value{false}, false, 0},
        {Value{std::int64_t{-3}}, true, -3},
        {Value{std::int64_t{1} << 40}, true, 2147483647},
        {Value{Data{1, 2}}, false, 0},
        {Value{Dictionary{{"a", Value{"1"}}}}, false, 0},
    };
    for (const Reading& reading : readings) {
        const auto text = stringValue(reading.value).value_or("(no text)");
        EXPECT_EQ(boolValue(reading.value), reading.asBool) << text;
        EXPECT_EQ(intValue(reading.value), reading.asInt) << text;
    }
}

TEST(Value, HasATextOnlyWhenItIsOne) {
    EXPECT_EQ(stringValue(Value{"1"}), "1");
    EXPECT_EQ(stringValue(Value{std::int64_t{1}}), std::nullopt);
    EXPECT_EQ(stringValue(Value{true}), std::nullopt);
}

} // namespace
} // namespace platform
