#include "platform/x11/overlay/Gamma.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <poll.h>
#include <random>

// What is dark lies in a file before it is dark, and leaves it when the server has its ramp back,
// so that at each instant the file tells what a kill would leave behind. Every change goes the same
// way, `apply`: look what the server shows, write down what is the user's, set, and look again.

namespace platform::x11 {

namespace {

using namespace std::chrono_literals;
using gammaguard::Ramp;

// Twice within the five seconds that a bright monitor is put up with.
constexpr auto period = 2s;

constexpr const char* busy = "another program darkens this desktop's monitors through their gamma, "
                             "and they are left to it";

std::string newName() {
    std::random_device random;
    char text[17];
    std::snprintf(text, sizeof text, "%08x%08x", random(), random());
    return text;
}

// A driver that gives back other last digits each time is not a program that sets a ramp.
bool differ(const Ramp& a, const Ramp& b) {
    constexpr int lastDigits = 256;
    return !std::ranges::equal(
        a, b, [](int one, int other) { return std::abs(one - other) <= lastDigits; });
}

Ramp scaled(const Ramp& original, double factor) {
    Ramp ramp = original;
    for (std::uint16_t& value : ramp)
        value = static_cast<std::uint16_t>(std::lround(value * factor));
    return ramp;
}

} // namespace

Gamma::Gamma(Connection& x, GammaMeans given, Log& writer)
    : connection(x),
      means(std::move(given)),
      log(writer),
      owner(newName()),
      guard(means.guard,
            {"the gamma guard", "without it monitors stay bright, but with a compositor such as "
                                "picom they would be dark"},
            writer),
      clock(
          means.descriptors, [this] { look(); }, period) {
    if (means.folder.empty()) return;
    if (gammaguard::rescue(connection.xcb(), connection.root(), means.folder))
        log.write("monitors that an earlier program left dark are bright again");
    connection.flush();
}

// A server that does not answer leaves the ramps to the helper.
Gamma::~Gamma() {
    wishes.clear();
    apply();
    connection.forget(*this);
    guard.letGo(!dark.empty());
}

void Gamma::darken(const void* who, std::vector<xcb_randr_crtc_t> crtcs, double darkness) {
    wishes[who] = {std::move(crtcs), std::clamp(darkness, 0.0, 1.0)};
    apply();
}

void Gamma::release(const void* who) {
    if (wishes.erase(who) > 0) apply();
}

void Gamma::tell(const std::string& reason) {
    if (told.insert(reason).second) log.write(reason);
}

Gamma::Darkness Gamma::wished() const {
    Darkness all;
    for (const auto& [who, wish] : wishes)
        for (const xcb_randr_crtc_t crtc : wish.crtcs)
            if (wish.darkness > 0) all[crtc] = std::max(all[crtc], wish.darkness);
    return all;
}

void Gamma::apply() {
    Darkness wanted = wished();
    if (wanted.empty() && dark.empty()) return;
    if (!wanted.empty() && !isGuarded()) wanted.clear();
    std::set<xcb_randr_crtc_t> touched;
    for (const auto& [crtc, darkness] : wanted)
        touched.insert(crtc);
    for (const auto& [crtc, one] : dark)
        touched.insert(crtc);
    const Ramps now = rampsOf(touched);
    if (!connection.isAnswering()) return;
    takeOver(now, wanted);
    if (!keep()) wanted.clear();
    for (const auto& [crtc, one] : dark) {
        const auto darkness = wanted.find(crtc);
        const Ramp ramp =
            darkness == wanted.end() ? one.original : scaled(one.original, 1 - darkness->second);
        if (!now.at(crtc).empty() && now.at(crtc) != ramp)
            gammaguard::setRamp(connection.xcb(), crtc, ramp);
    }
    settle(wanted);
}

// What the server shows is the user's, unless it was set here.
void Gamma::takeOver(const Ramps& now, Darkness& wanted) {
    for (const auto& [crtc, ramp] : now) {
        const auto known = dark.find(crtc);
        if (ramp.empty()) {
            if (known != dark.end()) continue;
            wanted.erase(crtc);
            tell("a monitor has no gamma ramp and stays bright; with a compositor such as picom it "
                 "would be dark");
        } else if (known == dark.end() || differ(ramp, known->second.shown)) {
            dark[crtc].original = ramp;
        }
    }
}

// The answers also tell that the server has done what was asked before.
void Gamma::settle(const Darkness& wanted) {
    std::set<xcb_randr_crtc_t> set;
    for (const auto& [crtc, one] : dark)
        set.insert(crtc);
    const Ramps now = rampsOf(set);
    if (!connection.isAnswering()) return;
    std::erase_if(dark, [&wanted](const auto& one) { return !wanted.contains(one.first); });
    for (auto& [crtc, one] : dark)
        if (!now.at(crtc).empty()) one.shown = now.at(crtc);
    if (!dark.empty()) {
        keep();
        clock.start();
        return;
    }
    clock.stop();
    if (!file || !file->isLocked()) return;
    file->remove();
    file->unlock();
    written.clear();
}

bool Gamma::isGuarded() {
    return claimServer() && guard.answers({connection.displayName(), means.folder, server, owner});
}

bool Gamma::claimServer() {
    if (file && file->isLocked()) return true;
    if (means.folder.empty()) {
        tell("there is no folder for the gamma ramps of monitors, which therefore stay bright; "
             "XDG_RUNTIME_DIR should name the session's");
        return false;
    }
    if (!file) {
        server = gammaguard::nameServer(connection.xcb(), connection.root());
        connection.flush();
        if (server.empty()) return false;
        file.emplace(means.folder, server);
    }
    if (const int error = lockSoon()) {
        tell(error == EWOULDBLOCK ? std::string(busy)
                                  : "gamma ramps cannot be kept in " + means.folder + ": " +
                                        std::strerror(error) + "; the monitors stay bright");
        return false;
    }
    // Left behind since this object was made.
    if (const auto left = file->read()) gammaguard::putBack(connection.xcb(), left->ramps);
    connection.flush();
    return true;
}

// The helper of a program that was just killed has the lock for a moment.
int Gamma::lockSoon() {
    constexpr int attempts = 20;
    constexpr int shortTime = 10; // milliseconds
    int error = file->lock();
    for (int i = 0; error == EWOULDBLOCK && !told.contains(busy) && i < attempts; ++i) {
        poll(nullptr, 0, shortTime);
        error = file->lock();
    }
    return error;
}

/// False where the ramps of what is to be dark are not safe.
bool Gamma::keep() {
    if (dark.empty()) return true;
    gammaguard::Kept kept{owner, {}};
    for (const auto& [crtc, one] : dark)
        kept.ramps[crtc] = one.original;
    if (kept.ramps == written) return true;
    const int error = file->write(kept);
    if (error == 0)
        written = std::move(kept.ramps);
    else
        tell("gamma ramps cannot be kept in " + means.folder + ": " + std::strerror(error) +
             "; the monitors stay bright");
    return error == 0;
}

Gamma::Ramps Gamma::rampsOf(const std::set<xcb_randr_crtc_t>& crtcs) {
    std::vector<xcb_randr_get_crtc_gamma_cookie_t> asked;
    for (const xcb_randr_crtc_t crtc : crtcs)
        asked.push_back(xcb_randr_get_crtc_gamma(connection.xcb(), crtc));
    Ramps ramps;
    auto cookie = asked.begin();
    for (const xcb_randr_crtc_t crtc : crtcs)
        ramps[crtc] =
            gammaguard::rampOf(connection.wait(*cookie++, xcb_randr_get_crtc_gamma_reply).get());
    return ramps;
}

void Gamma::look() {
    if (guard.hasEnded()) {
        apply();
        return;
    }
    for (auto& [crtc, one] : dark) {
        if (one.asked != 0) continue; // the server is slow, or stopped
        one.asked = xcb_randr_get_crtc_gamma(connection.xcb(), crtc).sequence;
        connection.awaitReply(one.asked, *this);
    }
    connection.flush();
}

void Gamma::handleReply(unsigned sequence, const void* reply) {
    const auto found = std::ranges::find_if(
        dark, [sequence](const auto& one) { return one.second.asked == sequence; });
    if (found == dark.end()) return;
    found->second.asked = 0;
    const Ramp ramp =
        gammaguard::rampOf(static_cast<const xcb_randr_get_crtc_gamma_reply_t*>(reply));
    if (!ramp.empty() && differ(ramp, found->second.shown)) apply();
}

} // namespace platform::x11
