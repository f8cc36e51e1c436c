#include "platform/sway/connection/UserConfiguration.h"
#include "testing/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

// The user's configuration, read by the compositor's own rules.

namespace {

using platform::sway::includedFrom;
using platform::sway::UserConfiguration;

UserConfiguration read(const std::string& text) {
    return UserConfiguration({"/nowhere/config", text}, [](const auto&, const auto&) {
        return std::vector<platform::sway::ConfigurationFile>();
    });
}

TEST(SwayConfiguration, TellsWhatTheUserHasMapped) {
    struct Row {
        const char* text;
        const char* mapping; ///< after "input type:pointer "
    };
    for (const Row& row : {
             Row{"", "all"},
             {"input type:pointer map_to_output DP-1", "map_to_output DP-1"},
             {"input type:pointer {\n\tmap_to_output DP-1\n}\n", "map_to_output DP-1"},
             {"input type:pointer\n{\n\tmap_to_output DP-1\n}\n", "map_to_output DP-1"},
             {"input \"type:pointer\" map_to_region 0 0 10 20", "map_to_region 0 0 10 20"},
             {"input * map_to_output 'Some Maker X 1'", "map_to_output \"Some Maker X 1\""},
             {"input type:pointer map_to_output \\\nDP-1", "map_to_output DP-1"},
             {"INPUT type:pointer map_to_output DP-1", "map_to_output DP-1"},
             {"input * map_to_output A\ninput type:pointer map_to_output B",
              "map_to_output A; input type:pointer map_to_output B"},
             {"input type:touchpad map_to_output A", "all"},
             {"# input type:pointer map_to_output A", "all"},
             {"# what goes on \\\ninput type:pointer map_to_output A", "all"},
             {"input type:pointer accel_profile flat", "all"},
             {"mode x {\n input type:pointer map_to_output A\n}", "all"},
             {"seat * {\n hide_cursor 5\n}\ninput * map_to_output A", "map_to_output A"},
             {"input 1:2:Mouse map_to_output A", "all; input 1:2:Mouse map_to_output A"},
             {"input type:pointer map_to_output A\ninput \"My Mouse\" map_to_output B",
              "map_to_output A; input \"My Mouse\" map_to_output B"},
             {"set $left DP-1\ninput type:pointer map_to_output $left", "map_to_output DP-1"},
             {"set $l A\nset $left B\ninput type:pointer map_to_output $left", "map_to_output B"},
             {"set $a A\nset $b $a\nset $a C\ninput * map_to_output $b", "map_to_output A"},
             {"set $rule input * map_to_output A\n$rule", "map_to_output A"},
             {"set $kind type:pointer\ninput $kind {\nmap_to_output A\n}", "map_to_output A"},
             {"input * map_to_output $none", "map_to_output \"$none\""},
             {"input", "all"},
             {"input type:pointer {", "all"},
             {"}\n}\ninput * map_to_output \"A", "map_to_output A"},
         }) {
        EXPECT_EQ(read(row.text).mappingOf("type:pointer", "all"),
                  std::string("input type:pointer ") + row.mapping)
            << row.text;
    }
}

TEST(SwayConfiguration, TellsWhenTheUsersCursorHides) {
    const std::string never = "seat * hide_cursor 0";
    EXPECT_EQ(read("").cursorHiding(), never);
    EXPECT_EQ(read("seat * hide_cursor 3000").cursorHiding(), never + "; seat * hide_cursor 3000");
    EXPECT_EQ(read("seat * {\n  hide_cursor 2000\n}").cursorHiding(),
              never + "; seat * hide_cursor 2000");
    EXPECT_EQ(read("seat seat1 hide_cursor 3000").cursorHiding(),
              never + "; seat seat1 hide_cursor 3000");
    EXPECT_EQ(read("seat * hide_cursor when-typing enable").cursorHiding(), never);
}

TEST(SwayConfiguration, TellsWhatTheUserHasBound) {
    constexpr std::uint32_t shift = 1, control = 4, alt = 8, super = 64;
    constexpr std::uint32_t f2 = 68;
    struct Row {
        const char* text;
        std::uint32_t modifiers;
        bool isBound; ///< F2 with them
    };
    for (const Row& row : {
             Row{"bindsym Mod1+F2 exec x", alt, true},
             {"bindsym Mod1+F2 exec x", alt | shift, false},
             {"bindsym alt+f2 exec x", alt, true},
             {"bindsym F2+Mod4+Shift exec x", super | shift, true},
             {"bindcode Control+68 exec x", control, true},
             {"bindcode Control+69 exec x", control, false},
             {"bindcode --release --locked Ctrl+68 exec x", control, true},
             {"bindsym --to-code --no-warn --input-device=* Ctrl+F2 exec x", control, true},
             {"bindsym --input-device=1:2:Keys Ctrl+F2 exec x", control, false},
             {"bindsym --whole-window Ctrl+F2 exec x", control, false},
             {"set $mod Mod4\nbindsym $mod+F2 exec x", super, true},
             {"set $key Mod4+F2\nbindsym $key exec x", super, true},
             {"bindsym {\n Mod4+F2 exec x\n Mod1+F3 exec y\n}", super, true},
             {"bindsym --locked {\n Mod4+F2 exec x\n}", super, true},
             {"mode \"my mode\" {\n bindsym Mod4+F2 exec x\n}", super, false},
             {"mode default {\n bindsym Mod4+F2 exec x\n}", super, true},
             {"mode \"a\" {\n bindsym {\n Mod4+F2 exec x\n }\n}", super, false},
             {"bindsym Mod4+F2 exec x\nunbindsym Mod4+F2", super, false},
             {"bindsym Mod4+F2 exec x\nunbindsym --release Mod4+F2", super, true},
             {"bindsym Mod4+F2+a exec x", super, false},
             {"bindsym Group2+Mod4+F2 exec x", super, true},
             {"bindsym Mod4+F2", super, false},
             {"bindsym", super, false},
             {"bar {\n bindsym Mod4+F2 exec x\n}", super, false},
         })
        EXPECT_EQ(read(row.text).binds(row.modifiers, f2, {"F2"}), row.isBound) << row.text;
}

struct SwayIncludes : testing::Test {
    std::string mapped(const std::string& text) const {
        const auto all =
            UserConfiguration({folder.path("a (b)/config"), text}).mappingOf("type:pointer", "all");
        return all.substr(all.rfind(' ') + 1);
    }
    void SetUp() override {
        for (const char* name : {"a (b)", "a (b)/parts", "home"})
            std::filesystem::create_directory(folder.path(name));
        folder.write("a (b)/one", "input * map_to_output ONE\n");
        folder.write("a (b)/parts/10", "input * map_to_output TEN\ninclude 20\n");
        folder.write("a (b)/parts/20", "input * map_to_output TWENTY\ninclude 10\ninclude ../one");
        folder.write("home/rules", "input * map_to_output HOME\n");
    }
    testing_support::TempFolder folder;
};

TEST_F(SwayIncludes, AreReadFromTheFolderOfTheFileThatNamesThem) {
    EXPECT_EQ(mapped("include one"), "ONE");
    EXPECT_EQ(mapped("include ./one\n"), "ONE");
    EXPECT_EQ(mapped("include parts/10"), "ONE") << "which is the last that 20 names";
    EXPECT_EQ(mapped("include none"), "all");
    EXPECT_EQ(mapped("include parts"), "all") << "a folder";
}

TEST_F(SwayIncludes, MayBePatternsVariablesAndHomes) {
    EXPECT_EQ(mapped("include parts/2*\n"), "ONE");
    EXPECT_EQ(mapped("set $which one\ninclude $which\n"), "ONE");
    EXPECT_EQ(mapped("include \"one\"\n"), "ONE");
    EXPECT_EQ(mapped("include " + folder.path("home/ru?es")), "HOME");
    const std::string home = std::getenv("HOME") ? std::getenv("HOME") : "";
    ::setenv("HOME", folder.path("home").c_str(), 1);
    EXPECT_EQ(mapped("include ~/rules"), "HOME");
    EXPECT_EQ(mapped("include $HOME/rules"), "HOME");
    ::setenv("HOME", home.c_str(), 1);
}

TEST_F(SwayIncludes, AreReadOnceWhereTheyStand) {
    EXPECT_EQ(mapped("include one\ninput * map_to_output MINE\ninclude one"), "MINE");
    EXPECT_EQ(mapped("input * map_to_output MINE\ninclude one\n"), "ONE");
    folder.write("a (b)/config", "include config");
    EXPECT_EQ(mapped("include config\ninclude one"), "ONE");
}

TEST_F(SwayIncludes, RunNoCommandAndReadNothingButFiles) {
    EXPECT_EQ(mapped("include $(touch '" + folder.path("ran") + "')one"), "all");
    EXPECT_EQ(mapped("include `echo one`"), "all");
    EXPECT_FALSE(std::filesystem::exists(folder.path("ran")));
    EXPECT_EQ(mapped("include /dev/zero\ninclude one"), "ONE");
    ASSERT_EQ(::mkfifo(folder.path("a (b)/pipe").c_str(), 0600), 0);
    EXPECT_EQ(mapped("include pipe\ninclude one"), "ONE");
}

TEST(SwayConfiguration, EndsWithVariablesThatGrowWithoutEnd) {
    std::string text = "set $a xxxxxxxxxxxxxxxx\n";
    for (char name = 'b'; name <= 'z'; ++name) {
        const std::string before = std::string("$") + static_cast<char>(name - 1);
        text += std::string("set $") + name + " " + before + before + before + before + "\n";
    }
    EXPECT_EQ(read(text + "input * map_to_output $a").mappingOf("type:pointer", "all"),
              "input type:pointer map_to_output xxxxxxxxxxxxxxxx");
}

} // namespace
