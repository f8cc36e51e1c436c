#include "platform/kwin/hiding/ConfigGroup.h"

#include <gtest/gtest.h>

// A group of values in a file of KDE's settings, which is somebody else's.

namespace platform::kwin {
namespace {

constexpr const char* group = "Effect-hidecursor";
const std::map<std::string, std::string> time{{"InactivityDuration", "7"}};

TEST(ConfigGroup, IsAddedBehindWhatIsThere) {
    EXPECT_EQ(withValues("", group, time), "[Effect-hidecursor]\nInactivityDuration=7\n");
    EXPECT_EQ(withValues("[A]\nb=1\n", group, time),
              "[A]\nb=1\n\n[Effect-hidecursor]\nInactivityDuration=7\n");
    EXPECT_EQ(withValues("[A]\nb=1", group, time),
              "[A]\nb=1\n\n[Effect-hidecursor]\nInactivityDuration=7\n");
}

TEST(ConfigGroup, HasTheValuesInThePlaceOfThoseItHad) {
    EXPECT_EQ(withValues("[Effect-hidecursor]\nHideOnTyping=false\nInactivityDuration[$i]=30\n\n"
                         "[Z]\nInactivityDuration=1\n",
                         group, time),
              "[Effect-hidecursor]\nInactivityDuration=7\nHideOnTyping=false\n\n"
              "[Z]\nInactivityDuration=1\n");
    EXPECT_EQ(withValues("[Effect-hidecursor]", group, time),
              "[Effect-hidecursor]\nInactivityDuration=7\n");
}

TEST(ConfigGroup, IsAsItWasWhereTheRestHasChanged) {
    const std::string users =
        "[A]\nb=1\n\n[Effect-hidecursor]\nInactivityDuration=30\n\n[Z]\nc=2\n";
    std::string now = withValues(users, group, time);
    now.replace(now.find("b=1"), 3, "b=5");
    EXPECT_EQ(withGroupOf(now, group, users),
              "[A]\nb=5\n\n[Effect-hidecursor]\nInactivityDuration=30\n\n[Z]\nc=2\n");
    EXPECT_EQ(withGroupOf(withValues("[A]\nb=5\n", group, time), group, "[A]\nb=1\n"),
              "[A]\nb=5\n\n")
        << "a group that was not there goes";
}

} // namespace
} // namespace platform::kwin
