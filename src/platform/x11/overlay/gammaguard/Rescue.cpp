#include "platform/x11/overlay/gammaguard/Rescue.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <numeric>
#include <random>

namespace platform::x11::gammaguard {

namespace {

constexpr std::string_view property = "_GAMMA_GUARD_SERVER";
using Digits = std::array<std::uint32_t, 4>;

xcb_atom_t propertyAtom(xcb_connection_t* c, bool onlyIfExists) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        c,
        xcb_intern_atom(c, onlyIfExists ? 1 : 0, static_cast<std::uint16_t>(property.size()),
                        property.data()),
        nullptr));
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

std::string nameIn(xcb_connection_t* c, xcb_window_t root, xcb_atom_t atom) {
    constexpr auto length = static_cast<std::uint32_t>(std::tuple_size_v<Digits>);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        c, xcb_get_property(c, 0, root, atom, XCB_ATOM_CARDINAL, 0, length), nullptr));
    if (!reply || reply->format != 32 || reply->value_len != length) return {};
    const auto* value = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    constexpr const char* digits = "0123456789abcdef";
    std::string name;
    for (std::uint32_t i = 0; i < length; ++i)
        for (int shift = 28; shift >= 0; shift -= 4)
            name += digits[value[i] >> shift & 0xf];
    return name;
}

} // namespace

std::string serverName(xcb_connection_t* c, xcb_window_t root) {
    const xcb_atom_t atom = propertyAtom(c, true);
    return atom == XCB_ATOM_NONE ? std::string() : nameIn(c, root, atom);
}

// Two may do this at once. Each appends its digits, and the first ones count.
std::string nameServer(xcb_connection_t* c, xcb_window_t root) {
    const xcb_atom_t atom = propertyAtom(c, false);
    if (atom == XCB_ATOM_NONE) return {};
    if (std::string name = nameIn(c, root, atom); !name.empty()) return name;
    std::random_device random;
    Digits digits{};
    std::ranges::generate(digits, [&random] { return random(); });
    xcb_change_property(c, XCB_PROP_MODE_APPEND, root, atom, XCB_ATOM_CARDINAL, 32,
                        static_cast<std::uint32_t>(digits.size()), digits.data());
    return nameIn(c, root, atom);
}

Ramp rampOf(const xcb_randr_get_crtc_gamma_reply_t* reply) {
    Ramp ramp;
    if (reply == nullptr) return ramp;
    ramp.reserve(3 * std::size_t{reply->size});
    for (const std::uint16_t* colour :
         {xcb_randr_get_crtc_gamma_red(reply), xcb_randr_get_crtc_gamma_green(reply),
          xcb_randr_get_crtc_gamma_blue(reply)})
        ramp.insert(ramp.end(), colour, colour + reply->size);
    return ramp;
}

void setRamp(xcb_connection_t* c, xcb_randr_crtc_t crtc, const Ramp& ramp) {
    const std::size_t size = ramp.size() / 3;
    xcb_randr_set_crtc_gamma(c, crtc, static_cast<std::uint16_t>(size), ramp.data(),
                             ramp.data() + size, ramp.data() + 2 * size);
}

bool isDarkened(const Ramp& now, const Ramp& ramp) {
    constexpr double lastDigits = 512; // of a driver that keeps eight bits, and rounds twice
    if (now.empty() || now.size() != ramp.size()) return false;
    const double whole = std::accumulate(ramp.begin(), ramp.end(), 0.0);
    const double left = std::accumulate(now.begin(), now.end(), 0.0);
    if (whole == 0 || left > whole) return false;
    return std::equal(now.begin(), now.end(), ramp.begin(), [&](double is, double was) {
        return std::abs(is - was * left / whole) <= lastDigits;
    });
}

bool putBack(xcb_connection_t* c, const Ramps& ramps) {
    std::vector<xcb_randr_get_crtc_gamma_cookie_t> asked;
    for (const auto& [crtc, ramp] : ramps)
        asked.push_back(xcb_randr_get_crtc_gamma(c, crtc));
    auto cookie = asked.begin();
    for (const auto& [crtc, ramp] : ramps) {
        xcb_generic_error_t* refused = nullptr;
        const Reply<xcb_randr_get_crtc_gamma_reply_t> reply(
            xcb_randr_get_crtc_gamma_reply(c, *cookie++, &refused));
        const Reply<xcb_generic_error_t> owned(refused);
        if (isDarkened(rampOf(reply.get()), ramp)) setRamp(c, crtc, ramp);
    }
    // Disconnecting drops what the server has not read yet, so wait for it.
    const Reply<xcb_get_input_focus_reply_t> done(
        xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
    return done != nullptr;
}

bool rescue(xcb_connection_t* c, xcb_window_t root, const std::string& folder) {
    const std::string server = serverName(c, root);
    if (server.empty()) return false;
    RampFile file(folder, server);
    if (!file.read() || file.lock() == EWOULDBLOCK) return false;
    // Who had the lock may have put them back just now.
    const auto kept = file.read();
    if (!kept || !putBack(c, kept->ramps)) return false;
    file.remove();
    return true;
}

} // namespace platform::x11::gammaguard
