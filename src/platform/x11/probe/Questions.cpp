#include "platform/x11/probe/Questions.h"

#include "platform/x11/connection/Needed.h"

#include <string_view>
#include <xcb/screensaver.h>
#include <xcb/shape.h>
#include <xcb/sync.h>
#include <xcb/xfixes.h>
#include <xcb/xinput.h>
#include <xcb/xtest.h>

namespace platform::x11 {

namespace {

using Version = ExtensionVersion;

// Each extension has a request of its own for it, with fields of its own. The server tells no
// higher version than it is asked for, and some extensions behave by what was asked for; nothing
// here uses any.
Version randrVersion(const Questions& x) {
    const auto r = x.reply(xcb_randr_query_version(x.xcb(), 1, 9), xcb_randr_query_version_reply);
    return r ? Version{r->major_version, r->minor_version} : Version();
}
Version xfixesVersion(const Questions& x) {
    const auto r = x.reply(xcb_xfixes_query_version(x.xcb(), 9, 0), xcb_xfixes_query_version_reply);
    return r ? Version{r->major_version, r->minor_version} : Version();
}
Version xinputVersion(const Questions& x) {
    const auto r =
        x.reply(xcb_input_xi_query_version(x.xcb(), 2, 9), xcb_input_xi_query_version_reply);
    return r ? Version{r->major_version, r->minor_version} : Version();
}
Version shapeVersion(const Questions& x) {
    const auto r = x.reply(xcb_shape_query_version(x.xcb()), xcb_shape_query_version_reply);
    return r ? Version{r->major_version, r->minor_version} : Version();
}
Version syncVersion(const Questions& x) {
    const auto r = x.reply(xcb_sync_initialize(x.xcb(), 3, 1), xcb_sync_initialize_reply);
    return r ? Version{r->major_version, r->minor_version} : Version();
}
Version xtestVersion(const Questions& x) {
    const auto r = x.reply(xcb_test_get_version(x.xcb(), 2, 2), xcb_test_get_version_reply);
    return r ? Version{r->major_version, r->minor_version} : Version();
}
Version saverVersion(const Questions& x) {
    const auto r =
        x.reply(xcb_screensaver_query_version(x.xcb(), 1, 1), xcb_screensaver_query_version_reply);
    return r ? Version{r->server_major_version, r->server_minor_version} : Version();
}

struct Wanted {
    const char* name;
    Version lowest;                       ///< 0.0 where the program works without it
    Version (*version)(const Questions&); ///< null where it does not matter
};
constexpr Wanted wanted[] = {
    {"RANDR", needed::randr, randrVersion},
    {"XFIXES", needed::xfixes, xfixesVersion},
    {"XInputExtension", needed::xinput, xinputVersion},
    {"SHAPE", {1, 0}, shapeVersion},
    {"SYNC", {}, syncVersion},
    {"XKEYBOARD", {}, nullptr},
    {"XTEST", {}, xtestVersion},
    {"MIT-SCREEN-SAVER", {}, saverVersion},
    {"Composite", {}, nullptr},
};

bool isThere(const Questions& x, std::string_view name) {
    const auto found =
        x.reply(xcb_query_extension(x.xcb(), static_cast<std::uint16_t>(name.size()), name.data()),
                xcb_query_extension_reply);
    return found && found->present != 0;
}

} // namespace

Questions::Questions() : connection(xcb_connect(nullptr, &number)) {
    if (xcb_connection_has_error(connection) != 0) return;
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < number && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    screen = screens.data;
    randr = isThere(*this, "RANDR") && randrVersion(*this) >= needed::randr;
}

std::string Questions::vendor() const {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    return {xcb_setup_vendor(setup), static_cast<std::size_t>(xcb_setup_vendor_length(setup))};
}

std::string Questions::release() const {
    const std::uint32_t count = xcb_get_setup(connection)->release_number;
    if (vendor().find("X.Org") == std::string::npos) return std::to_string(count);
    // 12101007 is 21.1.7, and 12014000 was 1.20.14.
    const std::uint32_t first = count / 100000 % 100, second = count / 1000 % 100;
    if (first < 21) return "1." + std::to_string(first) + "." + std::to_string(second);
    return std::to_string(first) + "." + std::to_string(second) + "." +
           std::to_string(count % 1000);
}

std::vector<ExtensionFacts> Questions::extensions() const {
    std::vector<ExtensionFacts> all;
    for (const auto& [name, lowest, version] : wanted) {
        ExtensionFacts facts{.name = name, .version = {}, .needed = {}, .suffices = false};
        const bool there = isThere(*this, name);
        const Version has = there && version != nullptr ? version(*this) : Version();
        if (there) facts.version = version != nullptr ? has.text() : "present";
        if (lowest != Version()) facts.needed = lowest.text();
        facts.suffices = there && has >= lowest;
        all.push_back(std::move(facts));
    }
    return all;
}

std::string Questions::atomName(xcb_atom_t named) const {
    const auto found = reply(xcb_get_atom_name(connection, named), xcb_get_atom_name_reply);
    if (!found) return {};
    return {xcb_get_atom_name_name(found.get()),
            static_cast<std::size_t>(xcb_get_atom_name_name_length(found.get()))};
}

xcb_window_t Questions::ownerOf(const std::string& selection) const {
    const auto found =
        reply(xcb_get_selection_owner(connection, atom(selection)), xcb_get_selection_owner_reply);
    return found ? found->owner : static_cast<xcb_window_t>(XCB_NONE);
}

std::optional<std::uint32_t> Questions::cardinal(xcb_window_t window,
                                                 const std::string& name) const {
    const auto found = property(window, name);
    if (!found || found->format != 32 || found->value_len == 0) return std::nullopt;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(found.get()));
}

std::string Questions::text(xcb_window_t window, const std::string& name) const {
    const auto found = property(window, name);
    if (!found || found->format != 8) return {};
    return {static_cast<const char*>(xcb_get_property_value(found.get())), found->value_len};
}

// Nothing is made on the server: an atom that nobody has named names nothing.
xcb_atom_t Questions::atom(const std::string& name) const {
    const auto found =
        reply(xcb_intern_atom(connection, 1, static_cast<std::uint16_t>(name.size()), name.data()),
              xcb_intern_atom_reply);
    return found ? found->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

Reply<xcb_get_property_reply_t> Questions::property(xcb_window_t window,
                                                    const std::string& name) const {
    constexpr std::uint32_t longest = 64;
    return reply(xcb_get_property(connection, 0, window, atom(name), XCB_ATOM_ANY, 0, longest),
                 xcb_get_property_reply);
}

} // namespace platform::x11
