#include "strings/Strings.h"

#include <gmock/gmock.h>

namespace strings {
namespace {

std::vector<std::string_view> keysOf(std::string_view language) {
    std::vector<std::string_view> keys;
    for (const Text& text : table(language))
        keys.push_back(text.key);
    return keys;
}

TEST(Strings, HaveTheSameKeysInEnglishAndItalian) {
    EXPECT_FALSE(keysOf("en").empty());
    EXPECT_EQ(keysOf("en"), keysOf("it"));
}

TEST(Strings, AreSortedAndNoneIsEmpty) {
    EXPECT_TRUE(std::ranges::is_sorted(keysOf("en")));
    for (const auto* language : {"en", "it"})
        for (const Text& text : table(language))
            EXPECT_FALSE(text.text.empty()) << text.key;
}

TEST(Strings, ShowTheKeyWhereThereIsNoText) {
    EXPECT_EQ(lookUp("en", "NO_SUCH_KEY"), "NO_SUCH_KEY");
    EXPECT_EQ(lookUp("zz", "OK"), "OK");
    EXPECT_TRUE(table("zz").empty());
}

} // namespace
} // namespace strings
