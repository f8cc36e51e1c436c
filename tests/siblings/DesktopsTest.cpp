#include "testing/desktop/Product.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

struct Desktops : testing::TestWithParam<const char*> {
    Desktops() : product(GetParam()), x(product.desktop.display()) {
        product.desktop.startWindowManager("openbox");
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(x.get(), x.root(), XCB_CW_EVENT_MASK, &mask);
    }

    std::uint32_t current() const {
        const auto reply = support::own(xcb_get_property_reply(
            x.get(),
            xcb_get_property(x.get(), 0, x.root(), x.atom("_NET_CURRENT_DESKTOP"),
                             XCB_ATOM_CARDINAL, 0, 1),
            nullptr));
        if (!reply || reply->value_len < 1) throw std::runtime_error("no desktops");
        return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    }
    bool reaches(std::uint32_t desktop) const {
        return x.waitUntil([&] { return current() == desktop; });
    }

    bool isWithControl(const xcb_generic_event_t& event, xcb_keysym_t wanted) const {
        const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
        if ((event.response_type & 0x7f) != XCB_KEY_PRESS) return false;
        const auto mapping = support::own(xcb_get_keyboard_mapping_reply(
            x.get(), xcb_get_keyboard_mapping(x.get(), key.detail, 1), nullptr));
        return mapping && *xcb_get_keyboard_mapping_keysyms(mapping.get()) == wanted &&
               (key.state & XCB_MOD_MASK_CONTROL) != 0;
    }

    /// Across all monitors to the left (-1) or right (1) edge, and a little back. The hand is
    /// slower than the program, which looks at the last of the motions that came together.
    void pushAgainst(int direction) {
        const auto bounds = support::boundsOf(product.layout);
        const Area& area = product.monitor(direction < 0 ? leftmost() : rightmost());
        product.hand.moveTo(direction < 0 ? 60 : bounds.width - 61, area.y + area.height / 2);
        product.hand.push(7 * direction, 0, 20, 125);
    }
    void stepBack(int direction) { product.hand.push(-7 * direction, 0, 5, 125); }

    std::size_t leftmost() const {
        std::size_t found = 0;
        for (std::size_t i = 0; i < product.layout.size(); ++i)
            if (product.monitor(i).x < product.monitor(found).x) found = i;
        return found;
    }
    std::size_t rightmost() const {
        std::size_t found = 0;
        for (std::size_t i = 0; i < product.layout.size(); ++i)
            if (product.monitor(i).x > product.monitor(found).x) found = i;
        return found;
    }

    Product product;
    support::XConnection x;
};

TEST_P(Desktops, AreSwitchedByTheLeftAndTheRightEdgeOncePerPush) {
    product.start({.product = "quenlow"});
    ASSERT_EQ(current(), 0u);
    const struct {
        int direction;
        std::uint32_t desktop;
    } pushes[] = {{1, 1}, {1, 2}, {-1, 1}, {1, 2}, {-1, 1}, {-1, 0}};
    for (const auto& push : pushes) {
        pushAgainst(push.direction);
        EXPECT_TRUE(reaches(push.desktop)) << "towards " << push.direction;
        stepBack(push.direction);
    }
}

TEST_P(Desktops, EndAtTheFirstOne) {
    product.start({.product = "quenlow"});
    pushAgainst(-1);
    stepBack(-1);
    // The program takes its events in order, so the first push has had its effect by then.
    pushAgainst(1);
    EXPECT_TRUE(reaches(1));
    EXPECT_EQ(product.program->errors().find("X11 error"), std::string::npos);
}

TEST_P(Desktops, AreNotSwitchedWhileTheProductIsSwitchedOff) {
    product.start({.product = "quenlow", .active = false});
    pushAgainst(1);
    stepBack(1);
    product.switchOver();
    pushAgainst(1);
    EXPECT_TRUE(reaches(1)) << "and not 2";
}

TEST_P(Desktops, AreAskedForByTheKeystrokeWhereNoWindowManagerRuns) {
    product.desktop.stopWindowManager();
    const std::uint32_t mask = XCB_EVENT_MASK_KEY_PRESS;
    xcb_change_window_attributes(x.get(), x.root(), XCB_CW_EVENT_MASK, &mask);
    // The one that has ended had the keyboard.
    xcb_set_input_focus(x.get(), XCB_INPUT_FOCUS_POINTER_ROOT, XCB_INPUT_FOCUS_POINTER_ROOT,
                        XCB_CURRENT_TIME);
    x.sync();
    product.start({.product = "quenlow"});
    for (const int direction : {1, -1}) {
        pushAgainst(direction);
        const xcb_keysym_t wanted = direction > 0 ? support::key::right : support::key::left;
        bool isTyped = false;
        EXPECT_TRUE(x.waitUntil(
            [&] { return isTyped; }, support::generous,
            [&](const xcb_generic_event_t& event) { isTyped |= isWithControl(event, wanted); }))
            << "towards " << direction;
        stepBack(direction);
    }
}

INSTANTIATE_TEST_SUITE_P(Layouts, Desktops,
                         testing::Values("1920x1080+0+0,1280x1024+1920+56",
                                         "1280x1024+1280+300*,1280x1024+0+0,1024x768+2560+700"),
                         [](const auto& layout) {
                             return layout.index == 0 ? "TwoMonitors" : "ThreeMonitors";
                         });

} // namespace
} // namespace desktop
