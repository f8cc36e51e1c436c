#include "platform/x11/session/XSettings.h"
#include "TestLoop.h"
#include "testing/KeptLog.h"
#include "testing/SettingsManager.h"
#include "testing/desktop/PrivateDesktop.h"

#include <gtest/gtest.h>

using platform::x11::parseSettings;
using platform::x11::wishForDark;
using support::SettingsManager;

namespace {

using Wish = std::optional<bool>;
using Values = SettingsManager::Settings;

constexpr const char* theme = "Net/ThemeName";
constexpr const char* preference = "Gtk/ApplicationPreferDarkTheme";

const Values several = {{"Xft/DPI", 98304}, {theme, "Greybird"}, {"Net/IconThemeName", ""}};

} // namespace

TEST(XSettings, AreReadInBothByteOrders) {
    for (const bool highFirst : {false, true}) {
        const auto settings = parseSettings(SettingsManager::written(several, highFirst));
        ASSERT_TRUE(settings) << highFirst;
        ASSERT_EQ(settings->size(), 3u);
        EXPECT_EQ(std::get<std::int32_t>(settings->at("Xft/DPI")), 98304);
        EXPECT_EQ(std::get<std::string>(settings->at(theme)), "Greybird");
        EXPECT_EQ(std::get<std::string>(settings->at("Net/IconThemeName")), "");
    }
}

TEST(XSettings, OfColoursAreSteppedOver) {
    auto bytes = SettingsManager::written({{"A", 1}, {theme, "b"}});
    // The number of "A" becomes a colour, which is four bytes longer.
    bytes[12] = 2;
    bytes.insert(bytes.begin() + 28, 4, 0xff);
    const auto settings = parseSettings(bytes);
    ASSERT_TRUE(settings);
    ASSERT_EQ(settings->size(), 1u);
    EXPECT_EQ(std::get<std::string>(settings->at(theme)), "b");
}

TEST(XSettings, ThatAreNotWholeAreNone) {
    const auto whole = SettingsManager::written(several);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(parseSettings(std::span(whole).first(length))) << length;
    auto bytes = whole;
    bytes[12] = 3;
    EXPECT_FALSE(parseSettings(bytes)) << "of an unknown kind";
    bytes = whole;
    std::fill(bytes.begin() + 8, bytes.begin() + 12, 0xff);
    EXPECT_FALSE(parseSettings(bytes)) << "more than there are";
}

TEST(XSettings, TellTheWishForDark) {
    struct Row {
        Values settings;
        Wish wish;
    };
    const Row rows[] = {{{{"Xft/DPI", 98304}}, {}},
                        {{{theme, "Greybird"}}, false},
                        {{{theme, "Greybird-dark"}}, true},
                        {{{theme, "Arc-Dark"}}, true},
                        {{{theme, "Adwaita:dark"}}, true},
                        {{{theme, "Darkness"}}, false},
                        {{{theme, 1}}, {}},
                        {{{preference, 1}}, true},
                        {{{preference, 0}}, false},
                        {{{theme, "Adwaita"}, {preference, 1}}, true},
                        {{{theme, "Adwaita-dark"}, {preference, 0}}, true}};
    for (const Row& row : rows) {
        const auto settings = parseSettings(SettingsManager::written(row.settings));
        ASSERT_TRUE(settings);
        EXPECT_EQ(wishForDark(*settings), row.wish) << &row - rows;
    }
}

TEST(XSettings, AreFollowedWhileManagersComeChangeAndGo) {
    const support::PrivateDesktop desktop("1280x800+0+0");
    testing_support::KeptLog log;
    x11tests::TestLoop loop;
    const auto opened = platform::x11::Connection::open(desktop.display(), loop, log, [] {});
    ASSERT_TRUE(opened.connection) << opened.error;
    std::vector<Wish> told;
    const platform::x11::XSettings settings(*opened.connection,
                                            [&](Wish wish) { told.push_back(wish); });
    EXPECT_TRUE(told.empty());
    {
        const SettingsManager manager(desktop.display(), {{theme, "Greybird-dark"}});
        EXPECT_TRUE(loop.runUntil([&] { return told == std::vector<Wish>{true}; }));
        manager.write({{theme, "Greybird-dark"}, {"Xft/DPI", 98304}});
        manager.write({{theme, "Greybird"}});
        EXPECT_TRUE(loop.runUntil([&] { return told == std::vector<Wish>{true, false}; }));
    }
    EXPECT_TRUE(loop.runUntil([&] { return told == std::vector<Wish>{true, false, {}}; }));
    const SettingsManager next(desktop.display(), {{preference, 1}});
    EXPECT_TRUE(loop.runUntil([&] { return told == std::vector<Wish>{true, false, {}, true}; }));
    const platform::x11::XSettings late(*opened.connection, [&](Wish wish) {
        EXPECT_EQ(wish, Wish(true)) << "of a manager that was there before";
        told.clear();
    });
    EXPECT_TRUE(told.empty());
}
