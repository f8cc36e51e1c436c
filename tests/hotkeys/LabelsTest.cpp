#include "hotkeys/Keys.h"
#include "platform/x11/keys/KeysymText.h"
#include "platform/x11/keys/PhysicalKeys.h"

#include <set>

namespace hotkeytests {
namespace {

using platform::x11::keysymText;

struct Labels : HotKeysOnADesktop {
    Labels() : HotKeysOnADesktop("") {}
    std::string label(std::uint16_t code) { return hotKeys->keyCodeString({code, 0}); }
    /// Changes the layout and waits until that has come through.
    void useLayout(const std::string& layout, std::uint16_t code, const std::string& expected) {
        setLayout(layout);
        EXPECT_TRUE(loop.runUntil([&] { return label(code) == expected; }))
            << layout << ": " << label(code);
    }
};

TEST_F(Labels, AreWhatTheUsersKeyboardPrints) {
    EXPECT_EQ(label(keyZ), "Z");
    EXPECT_EQ(label(41), ";");
    useLayout("de", keyZ, "Y");
    EXPECT_EQ(label(keyY), "Z");
    EXPECT_EQ(label(41), "Ö");
    EXPECT_EQ(label(27), "ß");
    EXPECT_EQ(label(50), "^");
    useLayout("fr", keyA, "Q");
    useLayout("ru", keyK, "Л");
    useLayout("gr", keyA, "Α");
    useLayout("cz", 19, "Ě");
    useLayout("il", keyA, "ש");
    useLayout("tr", 33, "Ğ");
}

TEST_F(Labels, OfKeysWithoutACharacterAreTheirNames) {
    const std::pair<std::uint16_t, const char*> rows[] = {
        {49, "Space"}, {36, "Return"}, {122, "F1"},   {111, "F12"},    {90, "F20"},
        {123, "Left"}, {126, "Up"},    {83, "Num 1"}, {117, "Delete"}, {4000, "Key 4000"}};
    for (const auto& [code, name] : rows)
        EXPECT_EQ(label(code), name);
}

TEST_F(Labels, OfModifiersStandBeforeTheKey) {
    EXPECT_EQ(hotKeys->modifierFlagsString({0, Shortcut::modifiers}), "Ctrl+Alt+Shift+Super+");
    EXPECT_EQ(hotKeys->modifierFlagsString({0, Shortcut::command}), "Super+");
    EXPECT_EQ(hotKeys->modifierFlagsString({0, 0}), "");
}

TEST(KeysymText, IsUpperCaseInEveryScript) {
    const std::pair<xcb_keysym_t, const char*> rows[] = {
        {'a', "A"},    {0xe4, "Ä"},      {0x1000431, "Б"}, {0x6c1, "А"},  {0x6a3, "Ё"},
        {0x7e1, "Α"},  {0x1bf, "Ż"},     {0x1ec, "Ě"},     {0x3e0, "Ā"},  {0x2b9, "I"},
        {0xce0, "א"},  {0x5c7, "ا"},     {0xda1, "ก"},     {0x13bd, "Œ"}, {0x20ac, "€"},
        {0xfe51, "´"}, {0x100263a, "☺"}, {0x101f600, "😀"}, {0x20, ""},    {0xffe1, ""},
        {0, ""}};
    for (const auto& [keysym, text] : rows)
        EXPECT_EQ(keysymText(keysym), text) << std::hex << keysym;
}

TEST(PhysicalKeys, HaveOneVirtualCodeEach) {
    std::set<int> places;
    int count = 0;
    for (int code = 0; code < 0x10000; ++code)
        if (const auto* found = platform::x11::physicalKey(static_cast<std::uint16_t>(code))) {
            ++count;
            places.insert(found->keycode());
            EXPECT_EQ(platform::x11::physicalKeyAt(found->keycode()), found) << code;
        }
    EXPECT_GT(count, 100);
    EXPECT_EQ(places.size(), static_cast<std::size_t>(count));
}

} // namespace
} // namespace hotkeytests
