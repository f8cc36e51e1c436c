#include "sway/SwaySession.h"
#include "testing/TempFolder.h"

#include <filesystem>

// What the user has bound in the compositor's configuration.

namespace desktop {
namespace {

constexpr int f2 = 120, option = 0x80000;

struct SwayUsers : Sway {
    /// A sway whose user has bound something to write a line.
    void beginWith(const std::string& bindings) {
        PrivateSway::Options options;
        options.configuration = bindings;
        keys.reset();
        begin(options);
        keys.emplace(*sway);
    }
    void TearDown() override { keys.reset(); }
    /// As the user's binding that writes a line into the runtime folder.
    static std::string writing(const std::string& bound) {
        return bound + " exec sh -c 'echo x >> $XDG_RUNTIME_DIR/user'\n";
    }
    std::size_t lines() const {
        std::ifstream file(sway->runtimeFolder() + "/user");
        return static_cast<std::size_t>(std::count(std::istreambuf_iterator<char>(file), {}, '\n'));
    }
    void stroke(const std::vector<std::uint32_t>& strokes) {
        for (const std::uint32_t key : strokes)
            keys->press(key);
        for (auto key = strokes.rbegin(); key != strokes.rend(); ++key)
            keys->release(*key);
    }
    bool userHeard(std::size_t times) {
        return waitUntil([&] { return lines() >= times; }, support::milliseconds(10'000)) &&
               lines() == times;
    }
    std::string ask(const std::vector<std::string>& words) const {
        const auto asked = sway->spawn(programs() + "/palisor", words);
        asked->wait();
        return asked->output() + asked->errors();
    }
    std::optional<SwayKeys> keys;
    const Setting stored{.more = {{"customShortcut", shortcut(f2, option)}}};
};

TEST_F(SwayUsers, BindingOfTheShortcutStaysTheUsersAndIsToldOf) {
    for (const char* bound :
         {"bindsym Mod1+F2", "set $mod Mod1\nbindsym --no-warn $mod+f2", "bindcode Mod1+68"}) {
        beginWith(writing(bound));
        start(stored);
        EXPECT_NE(ask({"status"}).find("can shortcut: no"), std::string::npos) << ask({"status"});
        EXPECT_TRUE(program->waitForText("the configuration of the compositor binds it"));
        stroke({KEY_LEFTALT, KEY_F2});
        EXPECT_TRUE(userHeard(1)) << bound;
        EXPECT_TRUE(isDark(2)) << "the program has not heard of it";
        program->signal(SIGTERM);
        EXPECT_EQ(program->wait(), 0);
        stroke({KEY_LEFTALT, KEY_F2});
        EXPECT_TRUE(userHeard(2)) << bound;
    }
}

TEST_F(SwayUsers, BindingOfAModeIsNone) {
    beginWith("mode other {\n" + writing("bindsym Mod1+F2") + "}\n");
    start(stored);
    EXPECT_NE(ask({"status"}).find("can shortcut: yes"), std::string::npos) << ask({"status"});
    stroke({KEY_LEFTALT, KEY_F2});
    EXPECT_TRUE(brightSoon());
}

TEST_F(SwayUsers, BindingIsRefusedWhereItIsToBecomeTheShortcut) {
    beginWith(writing("bindsym Mod1+F2"));
    start();
    EXPECT_EQ(ask({"settings", "set", "shortcut", "Alt+F3"}), "");
    const std::string refusal = ask({"settings", "set", "shortcut", "Alt+F2"});
    EXPECT_NE(refusal, "");
    EXPECT_EQ(ask({"settings", "get", "shortcut"}), "Alt+F3\n");
}

TEST_F(SwayUsers, BindingThatComesAndGoesWithAReloadIsHeeded) {
    const testing_support::TempFolder included;
    std::filesystem::permissions(included.path(), std::filesystem::perms::owner_all |
                                                      std::filesystem::perms::others_all);
    included.write("keys", "");
    beginWith("include " + included.path("keys") + "\n");
    start(stored);
    stroke({KEY_LEFTALT, KEY_F2});
    ASSERT_TRUE(brightSoon());
    stroke({KEY_LEFTALT, KEY_F2});
    ASSERT_TRUE(darkSoon(2));

    included.write("keys", writing("bindcode Mod1+68"));
    sway->run("reload");
    ASSERT_TRUE(program->waitForText("the configuration of the compositor binds it"));
    stroke({KEY_LEFTALT, KEY_F2});
    EXPECT_TRUE(userHeard(1));
    EXPECT_TRUE(isDark(2));

    included.write("keys", "");
    sway->run("reload");
    EXPECT_TRUE(
        waitUntil([&] { return ask({"status"}).find("can shortcut: yes") != std::string::npos; }));
    stroke({KEY_LEFTALT, KEY_F2});
    EXPECT_TRUE(brightSoon());
    EXPECT_EQ(lines(), 1U);
}

TEST_F(SwayUsers, BindingsWithTheThreeKeysAreHeardWhileTheyLiftTheHold) {
    beginWith(writing("bindsym Control+Mod1+Mod4+x"));
    start();
    for (const std::uint32_t key : {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA})
        keys->press(key);
    EXPECT_TRUE(brightSoon());
    keys->press(KEY_X);
    keys->release(KEY_X);
    EXPECT_TRUE(userHeard(1));
    EXPECT_FALSE(isDark(2)) << "they are still held";
    for (const std::uint32_t key : {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA})
        keys->release(key);
    EXPECT_TRUE(darkSoon(2));
}

TEST_F(SwayUsers, BindingOfTheThreeKeysAloneStaysTheUsers) {
    beginWith(writing("bindsym Control+Mod1+Super_L"));
    start();
    EXPECT_TRUE(program->waitForText("the configuration of the compositor binds"));
    stroke({KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA});
    EXPECT_TRUE(userHeard(1));
    program->signal(SIGTERM);
    EXPECT_EQ(program->wait(), 0);
    stroke({KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA});
    EXPECT_TRUE(userHeard(2));
}

} // namespace
} // namespace desktop
