#include "platform/linux/settings/PropertyListCheck.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using platform::linux::checkPropertyList;
using platform::linux::Wholeness;

std::string listOf(const std::string& items) {
    return "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict>" + items + "</dict></plist>\n";
}

TEST(PropertyListCheck, AcceptsEveryWayOfWritingAWholeList) {
    for (const std::string text : {
             "<plist><dict/></plist>",
             "\xEF\xBB\xBF<!-- c --><plist><dict></dict></plist> <!-- d -->\n",
             "<key>a</key><true/><key>b</key><false></false>",
             "<key>a</key> <!-- c --> <string>&amp;&lt;&#233;&#x41;</string>",
             "<key>a</key><string><![CDATA[<x>&]]></string><key>b</key><string/>",
             "<key>a</key><integer> -9223372036854775808 "
             "</integer><key>b</key><integer>+3</integer>",
             "<key>a</key><data>AA EC\n</data><key>b</key><data/><key>c</key><data>AA==</data>",
             "<key>a</key><real>-1.5e3</real><key>b</key><date>2020-01-02T03:04:05Z</date>",
             "<key>a</key><date>0579-01-01T00:00:00Z</date><key>b</key><date>9999-12-31T23:59:59Z"
             "</date><key>c</key><date> 579-01-01T00:00:00Z </date>",
             "<key>a</key><array><dict><key>x</key><true/></dict><array/></array>",
         }) {
        const auto list = text.find("<plist>") == std::string::npos ? listOf(text) : text;
        EXPECT_EQ(checkPropertyList(list), Wholeness::whole) << list;
    }
}

TEST(PropertyListCheck, RefusesWhatCannotBeReadWithoutLoss) {
    for (const std::string items : {
             "<key>a</key>",
             "<key>a</key><key>b</key><true/>",
             "<true/>",
             "<key/><true/>",
             "<key>a</key><integer>12x</integer>",
             "<key>a</key><integer></integer>",
             "<key>a</key><integer/>",
             "<key>a</key><integer>010</integer>",
             "<key>a</key><integer>18446744073709551616</integer>",
             "<key>a</key><integer>-9223372036854775809</integer>",
             "<key>a</key><real>one</real>",
             "<key>a</key><date>yesterday</date>",
             "<key>a</key><date>-2020-01-02T03:04:05Z</date>",
             "<key>a</key><date>-01-02T03:04:05Z</date>",
             "<key>a</key><date>20200-01-02T03:04:05Z</date>",
             "<key>a</key><date>0000-00-02T03:04:05Z</date>",
             "<key>a</key><date>2020-13-02T03:04:05Z</date>",
             "<key>a</key><date>2020-01-00T03:04:05Z</date>",
             "<key>a</key><date>2020-01-32T03:04:05Z</date>",
             "<key>a</key><date>2020-01-02T24:04:05Z</date>",
             "<key>a</key><date>2020-01-02T03:60:05Z</date>",
             "<key>a</key><date>9999-12-31T23:59:60Z</date>",
             "<key>a</key><date>2020-01-02T03:04:05</date>",
             "<key>a</key><data>AAE</data>",
             "<key>a</key><data>A?==</data>",
             "<key>a</key><string>&bogus;</string>",
             "<key>a</key><string>&#;</string>",
             "<key>a</key><string>&#x;</string>",
             "<key>a</key><string>&#0;</string>",
             "<key>a</key><string>&#x000;</string>",
             "<key>a</key><string>&#xd800;</string>",
             "<key>a</key><string>&#x110000;</string>",
             "<key>a</key><string>&#99999999999;</string>",
             "<key>a</key><string>x</text>",
             "<key>a</key><string>x<b/></string>",
             "<key>a</key><thing/>",
             "text",
         })
        EXPECT_EQ(checkPropertyList(listOf(items)), Wholeness::damaged) << items;
}

TEST(PropertyListCheck, RefusesZeroBytes) {
    const std::string zero(1, '\0');
    for (const auto& text : {listOf("<key>a</key><string>" + zero + "</string>"),
                             listOf("<key>a" + zero + "</key><true/>"), listOf("") + zero})
        EXPECT_EQ(checkPropertyList(text), Wholeness::damaged);
}

TEST(PropertyListCheck, RefusesForeignDocuments) {
    for (const std::string text :
         {"<plist><array/></plist>", "<html><dict/></html>", "bplist00", "{}", "<plist/>",
          "<plist><dict/></plist>x", "<plist><dict/><dict/></plist>",
          "<plist><string>x</string></plist>"})
        EXPECT_EQ(checkPropertyList(text), Wholeness::damaged) << text;
}

TEST(PropertyListCheck, RefusesEveryTrueBeginningOfAList) {
    const auto whole = listOf("<key>a</key><string>1</string><key>b</key><dict><key>c</key>"
                              "<data>AAEC</data></dict><key>d</key><integer>-5</integer>");
    const auto end = whole.size() - 1; // without the last line end it is whole still
    for (std::size_t length = 0; length < end; ++length)
        EXPECT_EQ(checkPropertyList(whole.substr(0, length)), Wholeness::damaged) << length;
    EXPECT_EQ(checkPropertyList(whole), Wholeness::whole);
}

TEST(PropertyListCheck, TellsRepeatedKeys) {
    EXPECT_EQ(checkPropertyList(listOf("<key>a</key><true/><key>a</key><false/>")),
              Wholeness::repeatsKeys);
    EXPECT_EQ(checkPropertyList(listOf("<key>a</key><dict><key>a</key><true/></dict>")),
              Wholeness::whole);
}

TEST(PropertyListCheck, RefusesNestingThatWouldExhaustTheStack) {
    std::string text;
    for (int depth = 0; depth < 100000; ++depth)
        text += "<array>";
    EXPECT_EQ(checkPropertyList(listOf("<key>a</key>" + text)), Wholeness::damaged);
}

} // namespace
