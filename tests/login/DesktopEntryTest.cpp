#include "platform/linux/login/DesktopEntry.h"

#include <gtest/gtest.h>

namespace {

using platform::linux::DesktopEntry;
using platform::linux::execArguments;
using platform::linux::execValue;

constexpr const char* sample = "# a note\n"
                               "[Desktop Entry]\n"
                               "Name = First\n"
                               "Hidden=true\n"
                               "\n"
                               "[Desktop Action other]\n"
                               "Name=Second\n";

TEST(DesktopEntry, ReadsOnlyItsOwnGroup) {
    const DesktopEntry entry("Name=Early\n[Other]\nName=Other\n" + std::string(sample));
    EXPECT_EQ(entry.string("Name"), "First");
    EXPECT_TRUE(entry.isTrue("Hidden"));
    EXPECT_FALSE(DesktopEntry("Name=Early\n").hasGroup());
    EXPECT_EQ(DesktopEntry("Name=Early\n").raw("Name"), std::nullopt);
}

TEST(DesktopEntry, KeepsEverythingItIsNotAskedToChange) {
    DesktopEntry entry(sample);
    EXPECT_EQ(entry.text(), sample);
    entry.erase("Hidden");
    entry.setRaw("Terminal", "false");
    EXPECT_EQ(entry.text(), "# a note\n[Desktop Entry]\nName = First\nTerminal=false\n\n"
                            "[Desktop Action other]\nName=Second\n");
}

TEST(DesktopEntry, TakesTheLastOfTwoValuesAndErasesBoth) {
    DesktopEntry entry("[Desktop Entry]\nHidden=true\nHidden=false\n");
    EXPECT_TRUE(entry.isFalse("Hidden"));
    entry.erase("Hidden");
    EXPECT_EQ(entry.text(), "[Desktop Entry]\n");
}

TEST(DesktopEntry, GetsAStringBackAsItWasGiven) {
    for (const std::string value : {"plain", " first blank", "back\\slash", "\\n", "a\nb\tc\rd"}) {
        DesktopEntry entry;
        entry.setString("Name", value);
        EXPECT_EQ(DesktopEntry(entry.text()).string("Name"), value);
        EXPECT_EQ(entry.lines().size(), 1u) << entry.text();
    }
}

TEST(DesktopEntry, QuotesWhatTheDesktopWouldTakeApart) {
    EXPECT_EQ(execValue({"/usr/bin/one", "--two", "three"}), "/usr/bin/one --two three");
    EXPECT_EQ(execValue({"/a b/c"}), "\"/a b/c\"");
    EXPECT_EQ(execValue({"/50%/c"}), "/50%%/c");
    EXPECT_EQ(execValue({"/a$b"}), "\"/a\\\\$b\"");
    EXPECT_EQ(execValue({"/a\\b"}), "\"/a\\\\\\\\b\"");
    EXPECT_EQ(execValue({"/a\"b`"}), "\"/a\\\\\"b\\\\`\"");
    EXPECT_EQ(execValue({"a", ""}), "a \"\"");
}

TEST(DesktopEntry, ReadsACommandBackAsItWasGiven) {
    const std::vector<std::string> command = {"/a b\"c$d\\e`f%g'h&;*?#()~|<>", "", "50%", "a\nb"};
    DesktopEntry entry;
    entry.setRaw("Exec", execValue(command));
    EXPECT_EQ(execArguments(DesktopEntry(entry.text()).string("Exec")), command);
}

TEST(DesktopEntry, LeavesFieldCodesOutOfACommand) {
    const std::vector<std::string> command = {"one", "--two"};
    EXPECT_EQ(execArguments("one %U  --two %i"), command);
    EXPECT_EQ(execArguments("\"one"), std::nullopt);
    EXPECT_EQ(execArguments(" "), std::vector<std::string>{});
}

} // namespace
