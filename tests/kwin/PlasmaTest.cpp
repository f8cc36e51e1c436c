#include "kwin/PlasmaSession.h"

namespace desktop {
namespace {

TEST_F(Plasma, ShowsASliderAsAMenuOfItsTicks) {
    beginPlasma(false);
    start();
    ASSERT_TRUE(waitUntil([&] { return !exportedMenu().empty(); }));
    const std::string menu = exportedMenu();
    const auto at = menu.find("Darken Other Monitors");
    ASSERT_NE(at, std::string::npos) << menu;
    EXPECT_NE(menu.find("\"75%\"", at), std::string::npos) << menu;
    EXPECT_NE(menu.find("\"radio\"", at), std::string::npos) << menu;
}

TEST_F(ShownKWin, IsTheSessionAlsoWhereSwaysSocketIsInherited) {
    beginShown();
    const std::string socket = screen->environment().at("SWAYSOCK");
    const auto asked =
        kwin->spawn("env", {"SWAYSOCK=" + socket, programs() + "/palisor", "doctor"});
    asked->wait();
    EXPECT_NE(asked->output().find("the compositor is KWin 6."), std::string::npos)
        << asked->output();
}

} // namespace
} // namespace desktop
