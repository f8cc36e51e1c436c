#include "sway/SwaySession.h"

namespace desktop {
namespace {

TEST_F(Sway, RecordsAShortcutWhereThereIsNone) {
    spawn({.more = {{"customShortcut", ""}}});
    const std::string file = sway->configFolder() + "/com.tamberlo.palisor.plist";
    const auto stored = [&] {
        std::ifstream text(file);
        const std::string all{std::istreambuf_iterator<char>(text), {}};
        return all.find("customShortcut<") != std::string::npos;
    };
    ASSERT_TRUE(waitUntil([&] {
        return sway->ask("get_tree").find("com.tamberlo.palisor") != std::string::npos;
    })) << "the dialogue that asks for one";
    SwayKeys keys(*sway);
    const auto stroke = [&] {
        keys.press(KEY_LEFTALT);
        keys.press(KEY_F9);
        keys.release(KEY_F9);
        keys.release(KEY_LEFTALT);
    };
    EXPECT_TRUE(waitUntil([&] {
        stroke(); // which goes nowhere before the dialogue listens
        return waitUntil(stored, std::chrono::seconds(2));
    })) << program->errors();
    ASSERT_TRUE(waitUntil([&] {
        keys.press(KEY_ESC);
        keys.release(KEY_ESC);
        return sway->ask("get_tree").find("com.tamberlo.palisor") == std::string::npos;
    }));
    ASSERT_TRUE(program->waitForText("macOS 10.14")) << program->errors();
    ASSERT_TRUE(darkSoon(2));
    for (const bool dark : {false, true}) {
        stroke();
        EXPECT_TRUE(waitUntil([&] { return isDark(2) == dark; })) << program->errors();
    }
}

} // namespace
} // namespace desktop
