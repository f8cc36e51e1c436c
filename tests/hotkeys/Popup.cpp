#include "hotkeys/Popup.h"

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace hotkeytests {

namespace {

constexpr xcb_keysym_t tab = 0xff09, space = 0x20, down = 0xff54;

} // namespace

// Not the first start of its life, so that no menu opens by itself.
Popup::Popup(const std::string& settings) {
    // The first key of a keyboard makes the server announce its mapping, upon which a window
    // manager gives up its combinations for a moment.
    hand.type(support::key::leftShift);
    desktop.startWindowManager("openbox");
    std::filesystem::create_directories(desktop.configFolder());
    std::ofstream(file()) << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"
                             "<dict><key>PRIMOACCESSO</key><string>1</string>"
                             "<key>CHECK_0</key><string>1</string>"
                             "<key>CHECK_1</key><string>0</string>"
                             "<key>RECOMMENDAUTOLOGIN</key><string>1</string>"
                             "<key>ATTIVO</key><true/>"
                          << settings << "</dict></plist>\n";
    hand.moveTo(640, 400);
    program = desktop.spawn(PALISOR);
}

std::filesystem::path Popup::file() const {
    return desktop.configFolder() / "com.tamberlo.palisor.plist";
}

/// The child of the root window in which the keyboard's focus is.
xcb_window_t Popup::frameWithFocus() {
    const auto focus =
        support::own(xcb_get_input_focus_reply(x.get(), xcb_get_input_focus(x.get()), nullptr));
    xcb_window_t window = focus ? focus->focus : XCB_NONE;
    while (window != XCB_NONE && window != XCB_INPUT_FOCUS_POINTER_ROOT && window != x.root()) {
        const auto tree =
            support::own(xcb_query_tree_reply(x.get(), xcb_query_tree(x.get(), window), nullptr));
        if (!tree) return XCB_NONE;
        if (tree->parent == x.root()) return window;
        window = tree->parent;
    }
    return XCB_NONE;
}

bool Popup::isUp() {
    const xcb_window_t before = current;
    return soon([&] {
        const xcb_window_t frame = frameWithFocus();
        if (frame == XCB_NONE || frame == before) return false;
        for (const auto& window : eye.windows())
            if (window.id == frame && window.mapped && window.area.width > 200) {
                current = frame;
                return true;
            }
        return false;
    });
}

support::Area Popup::area() const {
    const auto windows = eye.windows();
    return std::ranges::find(windows, current, &support::SeenWindow::id)->area;
}

bool Popup::isGone() {
    const bool gone = soon([&] {
        const auto windows = eye.windows();
        return std::ranges::none_of(
            windows, [&](const auto& window) { return window.id == current && window.mapped; });
    });
    current = XCB_NONE;
    return gone;
}

/// Nobody else can act between the two requests, so that asking disturbs nothing.
bool Popup::isRecording() {
    xcb_connection_t* c = x.get();
    xcb_grab_server(c);
    const auto reply = support::own(
        xcb_grab_keyboard_reply(c,
                                xcb_grab_keyboard(c, 0, x.root(), XCB_CURRENT_TIME,
                                                  XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                nullptr));
    const bool free = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    if (free) xcb_ungrab_keyboard(c, XCB_CURRENT_TIME);
    xcb_ungrab_server(c);
    x.sync();
    return !free;
}

bool Popup::startRecording() {
    hand.type(tab);
    hand.type(space);
    return soon([&] { return isRecording(); });
}

bool Popup::endsRecording() {
    return soon([&] { return !isRecording(); });
}

bool Popup::soon(const std::function<bool()>& reached) {
    const auto deadline = support::Clock::now() + support::generous;
    while (!reached())
        if (support::Clock::now() > deadline) return false;
    return true;
}

void Popup::openFromMenu() {
    const auto second = desktop.spawn(PALISOR);
    EXPECT_EQ(second->wait(), 0);
    EXPECT_TRUE(soon([&] {
        const auto windows = eye.windows();
        return std::ranges::any_of(windows, [](const auto& window) {
            return window.mapped && window.overrideRedirect && !window.inputOnly &&
                   window.area.width > 100 && window.area.width < 700;
        });
    }));
    hand.type(down);
    hand.type(down);
    hand.type(support::key::enter);
}

std::string Popup::stored() const {
    std::ifstream stream(file());
    std::string content{std::istreambuf_iterator<char>(stream), {}};
    std::erase_if(content, [](char letter) { return letter == '\n' || letter == '\t'; });
    return content;
}

bool Popup::stores(const std::string& item) {
    return soon([&] { return stored().find(item) != std::string::npos; });
}

bool Popup::isSwitchedOn() const {
    return stored().find("<key>ATTIVO</key><true/>") != std::string::npos;
}

bool Popup::turns(bool on) {
    return stores(std::string("<key>ATTIVO</key>") + (on ? "<true/>" : "<false/>"));
}

} // namespace hotkeytests
