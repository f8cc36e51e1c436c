#pragma once

#include "platform/memory/Effects.h"
#include "platform/memory/Settings.h"
#include "platform/sway/SwayDesktop.h"
#include "testing/KeptLog.h"
#include "testing/TempFolder.h"
#include "testing/sway/PrivateSway.h"

#include <cstdlib>
#include <stdexcept>

namespace swaytests {

/// The services as a program has them, on a private sway of two monitors side by side.
struct Services {
    using Later = std::function<void(std::function<void()>)>;

    /// `later` calls an operation from the run loop.
    explicit Services(platform::Descriptors& loop, Later later) {
        setenv("SWAYSOCK", sway.environment().at("SWAYSOCK").c_str(), 1);
        setenv("WAYLAND_DISPLAY", sway.socket().c_str(), 1);
        auto opened = platform::sway::openDesktop(loop, log, [] {});
        if (!opened.desktop) throw std::runtime_error(opened.error);
        desktop = std::move(opened.desktop);
        services.emplace(desktop->start({.settings = settings,
                                         .identifier = "com.tamberlo.tests",
                                         .folder = folder.path(),
                                         .holds = true,
                                         .helper = [](const std::string&) { return SWAY_GUARD; },
                                         .ownWindowActive = [this] { return ownWindowActive; },
                                         .later = std::move(later),
                                         .capabilitiesChanged = [] {}}));
    }
    Services(const Services&) = delete;
    Services& operator=(const Services&) = delete;
    ~Services() { desktop->end(); }

    platform::wayland::Desktop::Services* operator->() { return &*services; }

    support::PrivateSway sway;
    support::SwayHand hand{sway};
    testing_support::KeptLog log;
    testing_support::TempFolder folder;
    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::Settings settings{effects};
    bool ownWindowActive = false;
    std::unique_ptr<platform::wayland::Desktop> desktop;
    std::optional<platform::wayland::Desktop::Services> services;
};

} // namespace swaytests
