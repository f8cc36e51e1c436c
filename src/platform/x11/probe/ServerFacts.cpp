#include "platform/x11/probe/ServerFacts.h"

#include "platform/x11/keys/HotKeys.h"
#include "platform/x11/overlay/gammaguard/Rescue.h"
#include "platform/x11/probe/Questions.h"
#include "platform/x11/session/Displays.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <functional>
#include <utility>

// A server that lacks what the program needs is asked all the same, so that it can be told what is
// there. Therefore this goes by a connection of its own; what the program sees is then asked of the
// program's own classes.

namespace platform::x11 {

namespace {

class NoLoop final : public Descriptors {
  public:
    void watchReadable(int, std::function<void()>) override {}
    void unwatch(int) override {}
};

void listMonitors(const Questions& ask, ServerFacts& facts) {
    const auto reply =
        ask.reply(xcb_randr_get_monitors(ask.xcb(), ask.root(), 1), xcb_randr_get_monitors_reply);
    if (!reply) return;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem != 0;
         xcb_randr_monitor_info_next(&it)) {
        const xcb_randr_monitor_info_t& one = *it.data;
        facts.monitors.push_back({ask.atomName(one.name),
                                  {static_cast<double>(one.x), static_cast<double>(one.y),
                                   static_cast<double>(one.width), static_cast<double>(one.height)},
                                  one.primary != 0});
    }
}

// A check window that a dead window manager left does not name itself any more.
std::string windowManagerOf(const Questions& ask) {
    const auto window = ask.cardinal(ask.root(), "_NET_SUPPORTING_WM_CHECK");
    if (!window || ask.cardinal(*window, "_NET_SUPPORTING_WM_CHECK") != window) return {};
    const std::string name = ask.text(*window, "_NET_WM_NAME");
    return name.empty() ? "?" : name;
}

void lookAtTray(const Questions& ask, ServerFacts& facts) {
    const xcb_window_t owner = ask.ownerOf("_NET_SYSTEM_TRAY_S" + ask.screenNumber());
    facts.hasTray = owner != XCB_NONE;
    if (!facts.hasTray) return;
    // "instance", an end of text, "Class"
    const std::string classes = ask.text(owner, "WM_CLASS");
    facts.tray = classes.substr(0, classes.find('\0'));
}

// Some drivers count the values of the last place as whole, and most keep eight bits alone.
bool isLinear(const gammaguard::Ramp& ramp) {
    constexpr double lastDigits = 512;
    const std::size_t size = ramp.size() / 3;
    for (std::size_t i = 0; i < ramp.size(); ++i) {
        const double place = size < 2 ? 1 : static_cast<double>(i % size) / (size - 1.0);
        if (std::abs(ramp[i] - place * 0xffff) > lastDigits) return false;
    }
    return true;
}

void lookAtRamps(const Questions& ask, const std::string& folder, ServerFacts& facts) {
    gammaguard::Ramps kept;
    const std::string server = gammaguard::serverName(ask.xcb(), ask.root());
    if (!folder.empty() && !server.empty()) {
        gammaguard::RampFile file(folder, server);
        if (auto found = file.read()) {
            kept = std::move(found->ramps);
            facts.leftDark = file.lock() != EWOULDBLOCK;
        }
    }
    const auto list = ask.reply(xcb_randr_get_screen_resources_current(ask.xcb(), ask.root()),
                                xcb_randr_get_screen_resources_current_reply);
    if (!list) return;
    const xcb_randr_output_t* outputs = xcb_randr_get_screen_resources_current_outputs(list.get());
    for (int i = 0; i < list->num_outputs; ++i) {
        const auto info =
            ask.reply(xcb_randr_get_output_info(ask.xcb(), outputs[i], list->config_timestamp),
                      xcb_randr_get_output_info_reply);
        if (!info || info->crtc == XCB_NONE) continue;
        const auto reply = ask.reply(xcb_randr_get_crtc_gamma(ask.xcb(), info->crtc),
                                     xcb_randr_get_crtc_gamma_reply);
        const auto now = gammaguard::rampOf(reply.get());
        const auto found = kept.find(info->crtc);
        const auto& users = found == kept.end() ? now : found->second;
        // A server without any hardware shows a ramp of nothing but zeros, and keeps none.
        const bool isAny = std::ranges::any_of(users, [](std::uint16_t v) { return v != 0; });
        facts.ramps.push_back(
            {{reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get())),
              static_cast<std::size_t>(xcb_randr_get_output_info_name_length(info.get()))},
             isAny,
             isLinear(users)});
    }
}

/// What the program itself would find.
void lookAsTheProgram(const ServerQuestion& question, Settings& settings, Log& log,
                      ServerFacts& facts) {
    NoLoop loop;
    const auto [connection, error] = Connection::open({}, loop, log, nullptr);
    facts.refusal = error;
    if (!connection) return;
    facts.holdsCursor = connection->tellsBarrierHits();
    {
        const Displays displays(*connection);
        for (const xcb_rectangle_t& area : displays.areas())
            facts.screens.push_back({static_cast<double>(area.x), static_cast<double>(area.y),
                                     static_cast<double>(area.width),
                                     static_cast<double>(area.height)});
    }
    if (!question.shortcut) return;
    HotKeys hotKeys(*connection, settings, log, [](const std::function<void()>&) {});
    facts.shortcut =
        hotKeys.modifierFlagsString(*question.shortcut) + hotKeys.keyCodeString(*question.shortcut);
    facts.isShortcutTaken = question.triesShortcut && hotKeys.obstacleTo(*question.shortcut) ==
                                                          RecordableHotKeys::Obstacle::taken;
}

} // namespace

ServerFacts askServer(const ServerQuestion& question, Settings& settings, Log& log) {
    ServerFacts facts;
    const Questions ask;
    if (ask.isReached()) {
        facts.isReached = true;
        facts.vendor = ask.vendor();
        facts.release = ask.release();
        facts.extensions = ask.extensions();
        if (ask.hasRandr()) {
            listMonitors(ask, facts);
            lookAtRamps(ask, question.rampFolder, facts);
        }
        facts.windowManager = windowManagerOf(ask);
        facts.hasCompositor = ask.ownerOf("_NET_WM_CM_S" + ask.screenNumber()) != XCB_NONE;
        lookAtTray(ask, facts);
    }
    lookAsTheProgram(question, settings, log, facts);
    return facts;
}

bool brighten(const std::string& rampFolder) {
    const Questions ask;
    return ask.isReached() && ask.hasRandr() &&
           gammaguard::rescue(ask.xcb(), ask.root(), rampFolder);
}

} // namespace platform::x11
