#include "platform/linux/settings/PropertyList.h"

#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace {

using platform::Data;
using platform::Dictionary;
using platform::Value;
using platform::linux::ListEntry;
using platform::linux::PropertyList;
using platform::linux::readPropertyList;
using platform::linux::Wholeness;
using platform::linux::writePropertyList;
using namespace std::string_literals;

std::string listOf(const std::string& items) {
    return "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict>" + items + "</dict></plist>\n";
}

Wholeness wholenessOf(const std::string& text) {
    const auto read = readPropertyList(text);
    EXPECT_TRUE(read.wholeness != Wholeness::damaged || read.list.empty()) << text;
    return read.wholeness;
}

TEST(PropertyList, AcceptsEveryWayOfWritingAWholeList) {
    for (const std::string text : {
             "<plist><dict/></plist>",
             "\xEF\xBB\xBF<!-- c --><plist><dict></dict></plist> <!-- d -->\n",
             "<key>a</key><true/><key>b</key><false></false>",
             "<key></key><true/>",
             "<key/><true/>",
             "<key>a</key> <!-- c --> <string>&amp;&lt;&#233;&#x41;</string>",
             "<key>a</key><string><![CDATA[<x>&]]></string><key>b</key><string/>",
             "<key>a</key><integer> -9223372036854775808 "
             "</integer><key>b</key><integer>+3</integer>",
             "<key>a</key><data>AA EC\n</data><key>b</key><data/><key>c</key><data>AA==</data>",
             "<key>a</key><real> "
             "-1.5e3\n</real><key>i</key><real>+infinity</real><key>b</"
             "key><date>2020-01-02T03:04:05Z</date>",
             "<key>a</key><date>0579-01-01T00:00:00Z</date><key>b</key><date>9999-12-31T23:59:59Z"
             "</date><key>c</key><date> 579-01-01T00:00:00Z </date>",
             "<key>a</key><array><dict><key>x</key><true/></dict><array/></array>",
         }) {
        const auto list = text.find("<plist>") == std::string::npos ? listOf(text) : text;
        EXPECT_EQ(wholenessOf(list), Wholeness::whole) << list;
    }
}

// Otherwise the fuzzer begins with a list that is refused at its last line.
TEST(PropertyList, AcceptsTheRichestInputOfItsFuzzer) {
    std::ostringstream seed;
    seed << std::ifstream(SEEDS "/every-type.plist").rdbuf();
    const auto read = readPropertyList(seed.str());
    EXPECT_EQ(read.wholeness, Wholeness::whole);
    EXPECT_EQ(read.list.size(), 10U);
}

TEST(PropertyList, RefusesWhatCannotBeReadWithoutLoss) {
    for (const std::string items : {
             "<key>a</key>",
             "<key>a</key><key>b</key><true/>",
             "<true/>",
             "<key>a</key><integer>12x</integer>",
             "<key>a</key><integer></integer>",
             "<key>a</key><integer>28h</integer>",
             "<key>a</key><integer>0x</integer>",
             "<key>a</key><integer>0x2g</integer>",
             "<key>a</key><integer>0x10000000000000000</integer>",
             "<key>a</key><integer>+-5</integer>",
             "<key>a</key><integer>\xC2\xA0"
             "5</integer>",
             "<key>a</key><true>x</true>",
             "<key>a</key><integer/>",
             "<key>a</key><integer>010</integer>",
             "<key>a</key><integer>18446744073709551616</integer>",
             "<key>a</key><integer>-9223372036854775809</integer>",
             "<key>a</key><real>one</real>",
             "<key>a</key><real>1,5</real>",
             "<key>a</key><real>.</real>",
             "<key>a</key><real/>",
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
        EXPECT_EQ(wholenessOf(listOf(items)), Wholeness::damaged) << items;
}

TEST(PropertyList, RefusesWhatIsNoTextInXml) {
    for (const auto& bytes : {"\0"s, "\x01"s, "\xFF"s, "\xC3"s, "\xED\xA0\x80"s, "\xEF\xBF\xBF"s})
        for (const auto& text :
             {listOf("<key>a</key><string>" + bytes + "</string>"),
              listOf("<key>a" + bytes + "</key><true/>"), listOf("") + bytes, bytes + listOf("")})
            EXPECT_EQ(wholenessOf(text), Wholeness::damaged) << text;
}

TEST(PropertyList, RefusesControlCharactersInKeys) {
    for (const auto& bytes : {"\n"s, "\t"s, "&#13;"s, "\x7F"s, "\xC2\x80"s, "\xC2\x9F"s}) {
        EXPECT_EQ(wholenessOf(listOf("<key>a" + bytes + "</key><true/>")), Wholeness::damaged);
        EXPECT_EQ(wholenessOf(listOf("<key>a</key><dict><key>" + bytes + "b</key><true/></dict>")),
                  Wholeness::damaged);
        EXPECT_EQ(wholenessOf(listOf("<key>a</key><string>" + bytes + "</string>")),
                  Wholeness::whole);
    }
}

TEST(PropertyList, KeepsEveryOtherKeyAndMarksInOneWhatItWouldRefuse) {
    const std::string mark = "\xEF\xBF\xBD";
    const std::pair<std::string, std::string> keys[] = {
        {"a &\xC3\xA9", "a &\xC3\xA9"},
        {"\xEF\xBB\xBF\xF0\x9F\x98\x80", "\xEF\xBB\xBF\xF0\x9F\x98\x80"},
        {"\na\r\x7F", mark + "a" + mark + mark},
        {"a\x1B\0b"s, "a" + mark + mark + "b"}};
    for (const auto& [key, expected] : keys) {
        const PropertyList list{{key, ListEntry{Value{true}, {}}}};
        const auto read = readPropertyList(writePropertyList(list));
        ASSERT_EQ(read.wholeness, Wholeness::whole) << key;
        EXPECT_EQ(read.list.begin()->first, expected);
    }
}

TEST(PropertyList, TellsABlankTextFromAnEmptyList) {
    for (const char* text : {"", " ", "\xEF\xBB\xBF", "\n\t\r "})
        EXPECT_EQ(wholenessOf(text), Wholeness::blank) << text;
    EXPECT_EQ(wholenessOf(listOf("")), Wholeness::whole);
}

TEST(PropertyList, RefusesForeignDocuments) {
    for (const std::string text :
         {"<plist><array/></plist>", "<html><dict/></html>", "bplist00", "{}", "<plist/>",
          "<plist><dict/></plist>x", "<plist><dict/><dict/></plist>",
          "<plist><string>x</string></plist>"})
        EXPECT_EQ(wholenessOf(text), Wholeness::damaged) << text;
}

TEST(PropertyList, RefusesEveryTrueBeginningOfAList) {
    const auto whole = listOf("<key>a</key><string>1</string><key>b</key><dict><key>c</key>"
                              "<data>AAEC</data></dict><key>d</key><integer>-5</integer>");
    const auto end = whole.size() - 1; // without the last line end it is whole still
    for (std::size_t length = 1; length < end; ++length)
        EXPECT_EQ(wholenessOf(whole.substr(0, length)), Wholeness::damaged) << length;
    EXPECT_EQ(wholenessOf(whole), Wholeness::whole);
}

TEST(PropertyList, TellsRepeatedKeys) {
    EXPECT_EQ(wholenessOf(listOf("<key>a</key><true/><key>a</key><false/>")),
              Wholeness::repeatsKeys);
    EXPECT_EQ(wholenessOf(listOf("<key>a</key><dict><key>a</key><true/></dict>")),
              Wholeness::whole);
}

TEST(PropertyList, BoundsTheNesting) {
    const auto nested = [](int depth, const std::string& open, const std::string& close) {
        std::string text = "<true/>";
        for (; depth > 0; --depth)
            text.insert(0, open).append(close);
        return wholenessOf(listOf("<key>a</key>" + text));
    };
    for (const auto& [open, close] :
         {std::pair("<array>", "</array>"), std::pair("<dict><key>a</key>", "</dict>")}) {
        EXPECT_EQ(nested(99, open, close), Wholeness::whole);
        EXPECT_EQ(nested(100, open, close), Wholeness::damaged);
        EXPECT_EQ(nested(100000, open, ""), Wholeness::damaged);
    }
}

TEST(PropertyList, RefusesEntitiesOfTheUsersOwnAndUndeclaredOnes) {
    const std::string list = "<plist><dict><key>a</key><string>&e;</string></dict></plist>";
    std::string bomb = "<!DOCTYPE plist [<!ENTITY z \"zzzzzzzzzz\">";
    for (char name = 'y'; name >= 'e'; --name) {
        bomb += "<!ENTITY "s + name + " \"";
        for (int i = 0; i < 10; ++i)
            bomb += "&"s + static_cast<char>(name + 1) + ";";
        bomb += "\">";
    }
    for (const auto& type :
         {""s, "<!DOCTYPE plist PUBLIC \"p\" \"http://s.invalid\">"s,
          "<!DOCTYPE plist [<!ENTITY e \"x\">]>"s,
          "<!DOCTYPE plist [<!ENTITY e SYSTEM \"/etc/hostname\">]>"s, bomb + "]>"})
        EXPECT_EQ(wholenessOf(type + list), Wholeness::damaged) << type;
}

TEST(PropertyList, ReadsTheValuesWhateverTheyAreWrittenLike) {
    const auto read = readPropertyList(
        "\xEF\xBB\xBF\r\n<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\r\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"p.dtd\"><?p i?>\r\n"
        "<plist version=\"1.0\"><!-- c --><dict x=\"1\">\r\n"
        "<key>&lt;k&#x3e;</key>\r\n\t<string> \xC3\xA9<!-- c "
        "-->&#233;<![CDATA[<&amp;]]>\r\n</string>"
        "<key>n</key><integer>\n-5 </integer><key>p</key><integer>+7</integer>"
        "<key>min</key><integer>-9223372036854775808</integer>"
        "<key>x</key><integer>0x28</integer><key>X</key><integer> -0XfF</integer>"
        "<key>t</key><true> </true><key>f</key><false/><key>e</key><string/>"
        "<key>d</key><data>\r\n\tAA\r\n\tH/\r\n</data><key>none</key><data></data>"
        "<key>in</key><dict><key>x</key><dict/></dict>"
        "</dict></plist>\r\n<!-- c -->");
    EXPECT_EQ(read.wholeness, Wholeness::whole);
    const std::map<std::string, Value> expected{
        {"<k>", Value{" \xC3\xA9\xC3\xA9<&amp;\n"s}},
        {"n", Value{std::int64_t{-5}}},
        {"p", Value{std::int64_t{7}}},
        {"min", Value{std::numeric_limits<std::int64_t>::min()}},
        {"x", Value{std::int64_t{0x28}}},
        {"X", Value{std::int64_t{-0xff}}},
        {"t", Value{true}},
        {"f", Value{false}},
        {"e", Value{""s}},
        {"d", Value{Data{0, 1, 255}}},
        {"none", Value{Data{}}},
        {"in", Value{Dictionary{{"x", Value{Dictionary{}}}}}}};
    std::map<std::string, Value> values;
    for (const auto& [key, entry] : read.list)
        if (entry.value) values.emplace(key, *entry.value);
    EXPECT_EQ(values, expected);
}

TEST(PropertyList, IsWrittenWithOneTabALevelAndTheValuesOfOtherTypesAsTheyWere) {
    const std::string foreign = "\t<key>j</key>\n"
                                "\t<array>\n"
                                "\t\t<array/>\n"
                                "\t\t<real>0.10</real>\n"
                                "\t\t<dict>\n"
                                "\t\t\t<key>&lt;</key>\n"
                                "\t\t\t<date>579-01-02T03:04:05Z</date>\n"
                                "\t\t\t<key>b</key>\n"
                                "\t\t\t<string>&amp;</string>\n"
                                "\t\t</dict>\n"
                                "\t</array>\n"
                                "\t<key>k</key>\n"
                                "\t<integer>18446744073709551615</integer>\n";
    PropertyList list = readPropertyList(listOf(foreign)).list;
    ASSERT_EQ(list.size(), 2u);
    const auto add = [&list](const char* key, Value value) {
        list.emplace(key, ListEntry{std::move(value), {}});
    };
    add("a", Value{"<\"'&>"s});
    add("b", Value{true});
    add("c", Value{std::int64_t{-5}});
    add("d", Value{Data(52, 0)});
    add("e", Value{Data{}});
    add("f", Value{Dictionary{}});
    add("g", Value{Dictionary{{"x", Value{""s}}}});
    EXPECT_EQ(writePropertyList(list),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
              "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
              "<plist version=\"1.0\">\n<dict>\n"
              "\t<key>a</key>\n\t<string>&lt;\"'&amp;&gt;</string>\n"
              "\t<key>b</key>\n\t<true/>\n"
              "\t<key>c</key>\n\t<integer>-5</integer>\n"
              "\t<key>d</key>\n\t<data>\n\t" +
                  std::string(68, 'A') +
                  "\n\tAA==\n\t</data>\n"
                  "\t<key>e</key>\n\t<data>\n\t</data>\n"
                  "\t<key>f</key>\n\t<dict/>\n"
                  "\t<key>g</key>\n\t<dict>\n\t\t<key>x</key>\n\t\t<string></string>\n\t</dict>\n" +
                  foreign + "</dict>\n</plist>\n");
}

TEST(PropertyList, KeepsEveryTextThatXmlCanHoldAndMarksWhatItCannot) {
    const std::pair<std::string, std::string> texts[] = {
        {" \t\n\r\r\n", " \t\n\r\r\n"},
        {"]]>&#13;&quot;", "]]>&#13;&quot;"},
        {"\xEF\xBB\xBF\xF0\x9F\x98\x80", "\xEF\xBB\xBF\xF0\x9F\x98\x80"},
        {"a\x1B\0b"s, "a\xEF\xBF\xBD\xEF\xBF\xBD"
                      "b"},
        {"\xFF", "\xEF\xBF\xBD"},
        {"\xEF\xBF\xBF", "\xEF\xBF\xBD"}};
    for (const auto& [text, expected] : texts) {
        PropertyList list;
        list.emplace("key", ListEntry{Value{text}, {}});
        const auto read = readPropertyList(writePropertyList(list));
        ASSERT_EQ(read.wholeness, Wholeness::whole) << text;
        EXPECT_EQ(read.list.at("key").value, Value{expected});
    }
}

} // namespace
