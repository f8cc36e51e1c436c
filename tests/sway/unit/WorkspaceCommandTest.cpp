#include "platform/json/Parser.h"
#include "platform/sway/keys/Keyboard.h"

#include <gtest/gtest.h>

// Which workspace lies beside the one that is shown, by the compositor's own list.

namespace {

using platform::sway::commandTo;

constexpr const char* list = R"([
    {"name": "1", "output": "A", "visible": false}, {"name": "2", "output": "B", "visible": true},
    {"name": "3", "output": "A", "visible": true, "focused": true},
    {"name": "9: mail", "output": "A", "visible": false},
    {"name": "8", "output": "B", "visible": false}])";

std::string command(int direction, const std::string& output, const char* workspaces = list) {
    return commandTo(direction, output, *platform::json::Parser().parse(workspaces));
}

TEST(WorkspaceCommand, LeadsToTheOneBesideOnTheSameOutput) {
    EXPECT_EQ(command(1, "A"), "workspace next_on_output");
    EXPECT_EQ(command(-1, "A"), "workspace prev_on_output");
}

TEST(WorkspaceCommand, GoesToTheOutputWhereTheKeyboardIsNot) {
    EXPECT_EQ(command(1, "B"), "focus output \"B\"; workspace next_on_output");
}

TEST(WorkspaceCommand, IsNoneAtBothEnds) {
    constexpr const char* first = R"([{"name": "a", "output": "A", "visible": true},
        {"name": "b", "output": "A", "visible": false}])";
    EXPECT_EQ(command(-1, "A", first), "");
    EXPECT_NE(command(1, "A", first), "");
    EXPECT_EQ(command(-1, "B"), "");
    EXPECT_EQ(command(1, "C"), "") << "an output that has gone";
}

TEST(WorkspaceCommand, IsNoneForAnAnswerThatIsNone) {
    for (const char* answer :
         {"{}", "[]", "[1, null, \"x\", [], {}]", R"([{"output": 1, "visible": true}])",
          R"([{"name": "a", "output": "A", "visible": "yes"}])"})
        EXPECT_EQ(command(1, "A", answer), "") << answer;
}

} // namespace
