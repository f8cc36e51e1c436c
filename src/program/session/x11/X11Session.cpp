#include "program/session/x11/X11Session.h"

#include <unistd.h>
#include <utility>

namespace x = platform::x11;

Session::Opened X11Session::open(const Options& options, platform::Descriptors& descriptors,
                                 platform::Log& log) {
    std::unique_ptr<X11Session> session(new X11Session(options, descriptors, log));
    std::string error = session->connect();
    if (!error.empty()) return {nullptr, std::move(error)};
    return {std::move(session), {}};
}

std::string X11Session::connect() {
    for (auto* const connection : {&general, &input}) {
        auto opened = x::Connection::open({}, descriptors, log, [this] {
            if (lost) lost();
        });
        if (!opened.connection) return opened.error;
        *connection = std::move(opened.connection);
    }
    screens.emplace(*general);
    return {};
}

X11Session::Parts::Parts(X11Session& own, const Surroundings& given)
    : hold(*own.input, *own.screens, own.serverHolds),
      pointer(*own.input, *own.screens, given.runLoop, hold),
      cursor(*own.general),
      input(*own.input, own.descriptors, *own.screens, pointer, hold, given.ownWindowActive),
      keyboard(*own.general, own.log),
      hotKeys(*own.general, given.settings, own.log, given.later),
      windows(*own.general, *own.screens, own.log, given.product.name,
              {.guard = given.helper("gamma-guard"),
               .folder = given.folder,
               .descriptors = own.descriptors},
              &given.pictures),
      focus(*own.general, static_cast<std::uint32_t>(::getpid())),
      screenSaver(*own.general),
      settings(*own.general, given.darkWished),
      tray(*own.general, given.product.identifier, given.product.name) {}

std::string X11Session::displayName() const {
    return x::plainDisplayName(general->displayName());
}

Session::Services X11Session::start(const Surroundings& surroundings) {
    lost = surroundings.lost;
    parts.emplace(*this, surroundings);
    parts->windows.onBlendChange(surroundings.capabilitiesChanged);
    surroundings.onOwnWindowActive([this, isActive = surroundings.ownWindowActive] {
        if (!parts) return;
        parts->input.ownWindowChanged();
        input->sync(); // the barriers stand before the toolkit's own connection is heard
        parts->cursor.reveal(isActive());
    });
    return {*screens,           parts->pointer, parts->cursor,  parts->input,
            parts->keyboard,    parts->hotKeys, parts->windows, parts->focus,
            parts->screenSaver, &parts->tray,   nullptr};
}

platform::Capabilities X11Session::capabilities() const {
    const char* const unheld = "the cursor is put back after it has left its monitor";
    platform::Capability hold{.id = "hold", .available = true, .reason = {}};
    if (!serverHolds)
        hold = {"hold", false, std::string("Switched off by --hold off: ") + unheld + "."};
    else if (!input->tellsBarrierHits())
        hold = {"hold", false,
                std::string("The X server is older than XInput 2.3: ") + unheld + "."};
    const bool blends = parts && parts->windows.canBlend();
    return {std::move(hold),
            {"darkness", true,
             blends ? "" : "No compositor runs: monitors are darkened through their gamma."}};
}

void X11Session::aboutToEnd() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    general->giveUpAt(deadline);
    input->giveUpAt(deadline);
}

void X11Session::end() {
    parts.reset();
    general->flush();
    input->flush();
}
