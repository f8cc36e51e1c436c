#include "hotkeys/Popup.h"

#include <algorithm>

namespace hotkeytests {

Popup::Popup(const desktop::Entries& settings) : Product("1280x800+0+0,1024x768+1280+16") {
    // The first key of a keyboard makes the server announce its mapping, upon which a window
    // manager gives up its combinations for a moment.
    hand.type(support::key::leftShift);
    desktop.startWindowManager("openbox");
    desktop::Entries all = settings;
    all.insert({"customShortcut", ""});
    hand.moveTo(640, 400);
    spawn({.more = all});
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
    return support::waitUntil([&] {
        const xcb_window_t frame = frameWithFocus();
        if (frame == XCB_NONE || frame == before) return false;
        const auto windows = eye.windows();
        const auto found = std::ranges::find(windows, frame, &support::SeenWindow::id);
        if (found == windows.end() || !found->mapped || found->area.width <= 200) return false;
        current = frame;
        return true;
    });
}

support::Area Popup::area() const {
    const auto windows = eye.windows();
    return std::ranges::find(windows, current, &support::SeenWindow::id)->area;
}

bool Popup::canBeTypedInto() {
    return support::waitUntil([&] { return frameWithFocus() == current; });
}

bool Popup::isShown() const {
    const auto windows = eye.windows();
    return std::ranges::any_of(
        windows, [&](const auto& window) { return window.id == current && window.mapped; });
}

void Popup::minimise() {
    x.minimiseWindows(200, 1000); // what covers it stays
}

bool Popup::isGone() {
    const bool gone = support::waitUntil([&] { return !isShown(); });
    current = XCB_NONE;
    return gone;
}

bool Popup::startRecording() {
    if (isRecording()) return true;
    hand.type(support::key::tab);
    hand.type(support::key::space);
    return support::waitUntil([&] { return isRecording(); });
}

bool Popup::beginsRecording() {
    return support::waitUntil([&] { return isRecording(); });
}

bool Popup::endsRecording() {
    return support::waitUntil([&] { return !isRecording(); });
}

bool Popup::isSwitchedOn() const {
    return storedSettings().find(desktop::entry("ATTIVO", desktop::flag(true))) !=
           std::string::npos;
}

bool Popup::turns(bool on) const {
    return stores(desktop::entry("ATTIVO", desktop::flag(on)));
}

} // namespace hotkeytests
