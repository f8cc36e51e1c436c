#include "hotkeys/Keys.h"
#include "platform/session/PhysicalKeys.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <set>
#include <xkbcommon/xkbcommon-x11.h>

namespace {

bool serverHasXkb = true;

} // namespace

/// Stands before the library's own, since no server of today can be started without XKB.
extern "C" int xkb_x11_setup_xkb_extension(xcb_connection_t* connection, std::uint16_t major,
                                           std::uint16_t minor,
                                           xkb_x11_setup_xkb_extension_flags flags,
                                           std::uint16_t* majorOut, std::uint16_t* minorOut,
                                           std::uint8_t* firstEvent, std::uint8_t* firstError) {
    static const auto real = reinterpret_cast<decltype(&xkb_x11_setup_xkb_extension)>(
        ::dlsym(RTLD_NEXT, "xkb_x11_setup_xkb_extension"));
    return serverHasXkb
               ? real(connection, major, minor, flags, majorOut, minorOut, firstEvent, firstError)
               : 0;
}

namespace hotkeytests {
namespace {

constexpr xcb_keysym_t nextLayout = 0xfe08;

struct Labels : HotKeysOnADesktop {
    Labels() : HotKeysOnADesktop("") {}
    std::string label(std::uint16_t code) { return hotKeys->keyCodeString({code, 0}); }
    /// Changes the layout and waits until that has come through.
    void useLayout(const std::string& layout, std::uint16_t code, const std::string& expected) {
        setLayout(layout);
        EXPECT_TRUE(loop.runUntil([&] { return label(code) == expected; }))
            << layout << ": " << label(code);
    }
    /// Up to four layouts, between which CapsLock goes on.
    void useLayouts(const std::string& layouts) {
        const auto done =
            desktop.spawn("setxkbmap", {"-layout", layouts, "-option", "grp:caps_toggle"});
        ASSERT_EQ(done->wait(), 0) << done->errors();
    }
    /// Puts keysyms on keys, by the place of each, and waits until the last one is there.
    void useKeysyms(const std::vector<std::pair<std::uint16_t, std::string>>& keys,
                    const std::string& lastLabel) {
        std::vector<std::string> arguments;
        for (const auto& [code, keysym] : keys) {
            const int keycode = platform::session::physicalKey(code)->keycode();
            arguments.insert(arguments.end(),
                             {"-e", "keycode " + std::to_string(keycode) + " = " + keysym});
        }
        const auto done = desktop.spawn("xmodmap", arguments);
        ASSERT_EQ(done->wait(), 0) << done->errors();
        ASSERT_TRUE(loop.runUntil([&] { return label(keys.back().first) == lastLabel; }));
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

TEST_F(Labels, FindTheirKeysAgainAndSoDoTheNamesOfKeysyms) {
    const auto found = [this](std::string_view name) { return hotKeys->keyCodeNamed(name); };
    EXPECT_EQ(found("k"), keyK);
    EXPECT_EQ(found("space"), 49);
    EXPECT_EQ(found("Page Up"), 116);
    EXPECT_EQ(found("page_up"), 116);
    EXPECT_EQ(found("semicolon"), 41);
    EXPECT_EQ(found("nothing"), std::nullopt);
    EXPECT_EQ(found(""), std::nullopt);
    useLayout("de", keyZ, "Y");
    EXPECT_EQ(found("Z"), keyY);
    EXPECT_EQ(found("Ö"), 41);
    EXPECT_EQ(found("odiaeresis"), 41);
    useLayout("ru", keyK, "Л");
    EXPECT_EQ(found("Л"), keyK);
    EXPECT_EQ(found("K"), keyK) << "by its place, where no layout has it";
    for (std::uint16_t code = 0; code < 128; ++code) {
        if (platform::x11::physicalKey(code) == nullptr) continue;
        EXPECT_EQ(label(found(label(code)).value_or(4000)), label(code));
    }
}

TEST_F(Labels, OfCombinationsAreReadAsTheyAreWritten) {
    for (const Shortcut shortcut :
         {Shortcut{keyK, Shortcut::modifiers}, Shortcut{69, Shortcut::control}, // Num +
          Shortcut{122, 0}, Shortcut{116, Shortcut::command}})
        EXPECT_EQ(platform::shortcutNamed(hotKeys->modifierFlagsString(shortcut) +
                                              hotKeys->keyCodeString(shortcut),
                                          *hotKeys),
                  shortcut);
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

TEST_F(Labels, AreThoseOfEachOfFourLayouts) {
    useLayouts("us,ru,gr,il");
    for (const char* expected : {"Л", "Κ", "ל", "K"}) {
        hand.type(nextLayout);
        EXPECT_TRUE(loop.runUntil([&] { return label(keyK) == expected; }))
            << expected << ": " << label(keyK);
    }
}

TEST_F(Labels, AreToldToBeOthersWhenTheUserGoesToAnotherLayout) {
    useLayouts("us,ru,gr,il");
    hand.type(nextLayout);
    ASSERT_TRUE(loop.runUntil([&] { return label(keyK) == "Л"; }));
    std::vector<std::string> told;
    hotKeys->onLabelsChange([&] { told.push_back(label(keyK)); });
    hand.type('a');
    hand.chord({key::leftControl, key::leftShift});
    hand.type(nextLayout);
    EXPECT_TRUE(loop.runUntil([&] { return !told.empty(); }));
    EXPECT_THAT(told, testing::ElementsAre("Κ")) << "by keys too that change no layout";
    setLayout("fr");
    EXPECT_TRUE(loop.runUntil([&] { return told.back() == "K"; })) << told.back();
}

TEST_F(Labels, AskTheServerNothing) {
    const auto requests = [this] { return xcb_no_operation(opened.connection->xcb()).sequence; };
    const unsigned before = requests();
    EXPECT_EQ(label(keyK), "K");
    EXPECT_EQ(label(36), "Return");
    EXPECT_EQ(requests(), before + 1);
}

TEST_F(Labels, AreUpperCaseInEveryScript) {
    const std::tuple<std::uint16_t, const char*, const char*> rows[] = {
        {0, "adiaeresis", "Ä"},   {1, "U0431", "Б"},        {2, "Cyrillic_a", "А"},
        {3, "Cyrillic_io", "Ё"},  {4, "Greek_alpha", "Α"},  {5, "zabovedot", "Ż"},
        {6, "ecaron", "Ě"},       {7, "amacron", "Ā"},      {8, "idotless", "I"},
        {9, "hebrew_aleph", "א"}, {11, "Arabic_alef", "ا"}, {12, "Thai_kokai", "ก"},
        {13, "oe", "Œ"},          {14, "EuroSign", "€"},    {15, "U263A", "☺"},
        {16, "U1F600", "😀"}};
    std::vector<std::pair<std::uint16_t, std::string>> keys;
    for (const auto& [code, keysym, expected] : rows)
        keys.emplace_back(code, keysym);
    useKeysyms(keys, "😀");
    for (const auto& [code, keysym, expected] : rows)
        EXPECT_EQ(label(code), expected) << keysym;
}

TEST_F(Labels, OfDeadKeysAreTheirAccents) {
    useKeysyms({{0, "dead_grave"}, {1, "dead_tilde"}, {2, "dead_ogonek"}, {3, "dead_acute"}}, "´");
    EXPECT_EQ(label(0), "`");
    EXPECT_EQ(label(1), "~");
    EXPECT_EQ(label(2), "˛");
}

TEST_F(Labels, OfKeysThatPrintNothingAreThoseOfAPlainKeyboard) {
    useKeysyms({{0, "NoSymbol"}, {1, "BackSpace"}, {2, "nobreakspace"}, {3, "x"}}, "X");
    EXPECT_EQ(label(0), "A");
    EXPECT_EQ(label(1), "S");
    EXPECT_EQ(label(2), "D");
    EXPECT_EQ(label(94), "\\") << "no layout here has it";
}

struct WithoutXkb : Labels {
    WithoutXkb() {
        serverHasXkb = false;
        hotKeys.emplace(*opened.connection, settings, log, [](const auto& later) { later(); });
        serverHasXkb = true;
    }
};

TEST_F(WithoutXkb, LabelsAreThoseOfAPlainKeyboardAndHotKeysWork) {
    EXPECT_THAT(log.lines,
                testing::ElementsAre(testing::HasSubstr("lacks the extension XKEYBOARD")));
    EXPECT_EQ(label(keyZ), "Z");
    EXPECT_EQ(label(41), ";");
    EXPECT_EQ(label(122), "F1");
    bind({keyK, Shortcut::command | Shortcut::option});
    hand.type(key::numLock);
    hand.chord({key::leftSuper, key::leftAlt, 'k'});
    EXPECT_TRUE(loop.runUntil([&] { return presses == 1; }));
}

TEST(PhysicalKeys, HaveOneVirtualCodeEach) {
    std::set<int> places;
    int count = 0;
    for (int code = 0; code < 0x10000; ++code)
        if (const auto* found = platform::session::physicalKey(static_cast<std::uint16_t>(code))) {
            ++count;
            places.insert(found->keycode());
            EXPECT_EQ(platform::session::physicalKeyAt(found->keycode()), found) << code;
        }
    EXPECT_GT(count, 100);
    EXPECT_EQ(places.size(), static_cast<std::size_t>(count));
}

} // namespace
} // namespace hotkeytests
