#include "unit/Program.h"

#include <gmock/gmock.h>

namespace palisor {
namespace {

namespace codes = platform::keyCodes;
using platform::Value;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* switchesOff = R"(write {"key":"ATTIVO","value":false})";
constexpr const char* switchesOn = R"(write {"key":"ATTIVO","value":true})";

struct Keys : Program {
    explicit Keys(int variant = variants::barrier) : Program(variant) {
        platform.pointer.place({960, 500});
        launched();
    }
    void hold() {
        for (const auto key : {codes::command, codes::option, codes::control})
            modifier(key);
    }
};

TEST(Combination, IsHeldAtTheThirdKeyInAnyOrderAndReleasedAtTheFirst) {
    std::vector<std::uint16_t> order = {codes::command, codes::option, codes::control};
    do {
        for (const std::uint16_t released : order) {
            Keys keys;
            keys.modifier(order[0]);
            keys.modifier(order[1]);
            EXPECT_FALSE(keys.app.combo);
            EXPECT_THAT(keys.effects(), IsEmpty());
            keys.modifier(order[2]);
            EXPECT_TRUE(keys.app.combo);
            EXPECT_THAT(keys.writesOf(keys::ATTIVO), ElementsAre(switchesOff));
            keys.modifier(released);
            EXPECT_FALSE(keys.app.combo);
            EXPECT_THAT(keys.writesOf(keys::ATTIVO), ElementsAre(switchesOn));
        }
    } while (std::ranges::next_permutation(order).found);
}

TEST(Combination, IsNotMadeByRightHandOrOtherKeys) {
    Keys keys;
    for (const auto key : {codes::rightCommand, codes::rightOption, codes::rightControl,
                           codes::shift, codes::capsLock, codes::leftArrow})
        keys.modifier(key);
    EXPECT_THAT(keys.effects(), IsEmpty());
    EXPECT_THAT(keys.app.proKeys, IsEmpty());
}

TEST(Combination, KeepsHeldKeysUnderTheirDecimalCodes) {
    Keys keys;
    keys.modifier(codes::command);
    keys.modifier(codes::control);
    EXPECT_THAT(keys.app.proKeys, ElementsAre(std::pair("55", "YES"), std::pair("59", "YES")));
    keys.modifier(codes::command);
    EXPECT_THAT(keys.app.proKeys, ElementsAre(std::pair("59", "YES")));
}

TEST(Combination, OfAMissedPressStaysInvertedUntilTheKeyIsPressedAgain) {
    Keys keys;
    keys.modifier(codes::option); // the release of a key that was down before the program started
    keys.modifier(codes::command);
    keys.modifier(codes::control);
    EXPECT_TRUE(keys.app.combo);
}

TEST(Combination, DoesNothingWhileItsOptionIsOff) {
    Keys keys;
    keys.setting(keys::CTRLALTCMD, Value{false});
    keys.hold();
    keys.app.comboPressedReleased(true);
    EXPECT_FALSE(keys.app.combo);
    EXPECT_THAT(keys.app.proKeys, IsEmpty());
    EXPECT_THAT(keys.effects(), IsEmpty());
}

TEST(Combination, KeepsItsStateWhenItsOptionIsSwitchedOff) {
    Keys keys;
    keys.hold();
    keys.setting(keys::CTRLALTCMD, Value{false});
    keys.modifier(codes::command);
    EXPECT_TRUE(keys.app.combo);
    EXPECT_EQ(keys.app.proKeys.size(), 3U);
}

TEST(Combination, LiftsTheBarrierAndAnchorsItWhereTheCursorIsWhenReleased) {
    Keys keys;
    keys.hold();
    EXPECT_THAT(keys.effects({"windowOut"}), ElementsAre(R"(windowOut {"id":1})"));
    keys.pointer({2500, 500});
    EXPECT_THAT(keys.effects({"warp"}), IsEmpty());
    keys.modifier(codes::control);
    EXPECT_EQ(keys.app.switchedScreen, keys.screen(1));
    EXPECT_THAT(keys.effects({"window"}), testing::SizeIs(1));
    keys.pointer({1900, 500});
    EXPECT_EQ(keys.platform.pointer.location(), (Point{1921, 500}));
}

TEST(Combination, HeldWhileTheBarrierIsOffSwitchesItOnWhenReleased) {
    Keys keys;
    keys.setting(keys::ATTIVO, Value{false});
    keys.hold();
    EXPECT_THAT(keys.writesOf(keys::ATTIVO), IsEmpty());
    keys.modifier(codes::command);
    EXPECT_THAT(keys.writesOf(keys::ATTIVO), ElementsAre(switchesOn));
}

TEST(Combination, HeldAndReleasedActsOnWhetherTheProductIsOnAtThatMoment) {
    struct {
        std::vector<int> products;
        bool before, byHand; ///< whether the user switches it while the keys are held
        bool held, after;
        Lines releaseWrites;
    } const cases[] = {
        {{8}, true, false, false, true, {switchesOn}},
        {{8}, false, false, false, true, {switchesOn}},
        {{8}, true, true, true, true, {}},
        {{8}, false, true, true, true, {}},
        {{2, 5}, true, false, true, false, {switchesOff}},
        {{2, 5}, false, false, true, false, {switchesOff}},
        {{2, 5}, true, true, false, false, {}},
        {{2, 5}, false, true, false, false, {}},
        {{1}, true, false, true, true, {}},
        {{1}, false, false, false, true, {switchesOn}},
        {{1}, true, true, false, true, {switchesOn}},
        {{1}, false, true, true, true, {}},
        {{0, 3, 7}, true, true, false, false, {}},
    };
    for (const auto& [products, before, byHand, held, after, releaseWrites] : cases) {
        for (const int variant : products) {
            const auto row = std::to_string(variant) + (before ? " on" : " off") +
                             (byHand ? ", switched by hand" : "");
            Keys keys(variant);
            keys.setting(keys::ATTIVO, Value{before});
            const auto isOn = [&] { return keys.platform.settings.boolForKey(keys::ATTIVO); };
            keys.hold();
            if (byHand) keys.platform.hotKeys.press(Program::shortcut);
            EXPECT_EQ(isOn(), held) << row;
            keys.effects();
            keys.modifier(codes::option);
            EXPECT_EQ(isOn(), after) << row;
            EXPECT_EQ(keys.writesOf(keys::ATTIVO), releaseWrites) << row;
            EXPECT_EQ(keys.platform.cursor.isVisible(), variant != variants::cursorHider) << row;
        }
    }
}

TEST(Combination, SwitchesTheEdgeProductsOnWhileHeld) {
    for (const int variant : {variants::desktopSwitcher, variants::wrapAround}) {
        Keys keys(variant);
        keys.setting(keys::ATTIVO, Value{false});
        keys.hold();
        EXPECT_THAT(keys.writesOf(keys::ATTIVO), ElementsAre(switchesOn));
        keys.modifier(codes::command);
        EXPECT_THAT(keys.writesOf(keys::ATTIVO), ElementsAre(switchesOff));
    }
}

TEST(Combination, ReleasedHidesTheCursorOfTheCursorHider) {
    Keys keys(variants::cursorHider);
    keys.hold();
    EXPECT_THAT(keys.effects(), IsEmpty()) << "a press does nothing";
    keys.modifier(codes::command);
    EXPECT_FALSE(keys.platform.cursor.isVisible());
    EXPECT_THAT(keys.effects({"write", "log"}), IsEmpty());
}

TEST(Combination, ReleasedWhileTheCursorHiderIsOffSwitchesItOnAndHides) {
    Keys keys(variants::cursorHider);
    keys.setting(keys::ATTIVO, Value{false});
    keys.hold();
    keys.modifier(codes::command);
    EXPECT_THAT(keys.effects({"log"}), ElementsAre(R"(log {"text":"asdasdasd"})"));
    EXPECT_TRUE(keys.platform.settings.boolForKey(keys::ATTIVO));
    EXPECT_FALSE(keys.platform.cursor.isVisible());
}

TEST(Combination, OnlyStoresItsStateInTheOtherProducts) {
    for (const int variant : {0, 3, 7}) {
        Keys keys(variant);
        keys.hold();
        EXPECT_TRUE(keys.app.combo) << variant;
        keys.modifier(codes::command);
        EXPECT_FALSE(keys.app.combo) << variant;
        EXPECT_THAT(keys.effects({"write", "log"}), IsEmpty()) << variant;
    }
}

} // namespace
} // namespace palisor
