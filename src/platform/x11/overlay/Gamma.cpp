#include "platform/x11/overlay/Gamma.h"

#include <algorithm>
#include <cmath>

namespace platform::x11 {

Gamma::Gamma(Connection& x, std::string guardExecutable, Log& log)
    : connection(x), guard(std::move(guardExecutable), x.displayName(), log) {}

Gamma::~Gamma() {
    wishes.clear();
    apply();
}

void Gamma::darken(const void* who, std::vector<xcb_randr_crtc_t> crtcs, double darkness) {
    wishes[who] = {std::move(crtcs), std::clamp(darkness, 0.0, 1.0)};
    apply();
}

void Gamma::release(const void* who) {
    if (wishes.erase(who) > 0) apply();
}

void Gamma::apply() {
    std::map<xcb_randr_crtc_t, double> wanted;
    for (const auto& [who, wish] : wishes)
        for (xcb_randr_crtc_t crtc : wish.crtcs)
            wanted[crtc] = std::max(wanted[crtc], wish.darkness);

    std::vector<xcb_randr_crtc_t> restored;
    for (const auto& [crtc, ramp] : originals) {
        if (wanted.contains(crtc)) continue;
        set(crtc, ramp);
        restored.push_back(crtc);
    }
    for (const auto& [crtc, darkness] : wanted) {
        if (!originals.contains(crtc) && (darkness == 0 || !remember(crtc))) continue;
        Ramp ramp = originals[crtc];
        for (std::uint16_t& value : ramp)
            value = static_cast<std::uint16_t>(std::lround(value * (1 - darkness)));
        set(crtc, ramp);
    }
    if (restored.empty()) {
        connection.flush();
        return;
    }
    // The guard lets go only when the server has them back.
    connection.sync();
    for (xcb_randr_crtc_t crtc : restored) {
        originals.erase(crtc);
        guard.forget(crtc);
    }
}

bool Gamma::remember(xcb_randr_crtc_t crtc) {
    const auto reply = connection.wait(xcb_randr_get_crtc_gamma(connection.xcb(), crtc),
                                       xcb_randr_get_crtc_gamma_reply);
    if (!reply || reply->size == 0) return false;
    Ramp ramp;
    ramp.reserve(3 * std::size_t{reply->size});
    for (const std::uint16_t* colour :
         {xcb_randr_get_crtc_gamma_red(reply.get()), xcb_randr_get_crtc_gamma_green(reply.get()),
          xcb_randr_get_crtc_gamma_blue(reply.get())})
        ramp.insert(ramp.end(), colour, colour + reply->size);
    guard.keep(crtc, ramp);
    originals[crtc] = std::move(ramp);
    return true;
}

void Gamma::set(xcb_randr_crtc_t crtc, const Ramp& ramp) {
    const std::size_t size = ramp.size() / 3;
    xcb_randr_set_crtc_gamma(connection.xcb(), crtc, static_cast<std::uint16_t>(size), ramp.data(),
                             ramp.data() + size, ramp.data() + 2 * size);
}

} // namespace platform::x11
