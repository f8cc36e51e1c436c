#pragma once

#include "platform/json/Parser.h"
#include "platform/linux/http/CurlHttp.h"
#include "testing/HttpsServer.h"
#include "unit/Program.h"

#include <chrono>

// The program over the memory platform, but with the real web: its launch asks a server that the
// test has started.

namespace palisor {

using platform::Value;

/// The real web, with a limit that a test can wait for.
struct WebInAHurry final : platform::Http {
    explicit WebInAHurry(platform::Log& log) : web(log) {}

    platform::HttpReply get(const platform::HttpRequest& request) override {
        asked = request;
        auto hurried = request;
        hurried.timeout = shorter.value_or(request.timeout);
        return web.get(hurried);
    }

    platform::linux::CurlHttp web;
    platform::HttpRequest asked;   ///< as the program did last
    std::optional<double> shorter; ///< seconds, in the place of the program's own limit
};

/// The barrier product, past its first run, before its launch.
struct Exchange {
    Exchange(const support::TestAuthority& authority, const support::HttpsServer& server)
        : Exchange(authority.file(), server.host()) {}

    Exchange(const std::string& authorityFile, const std::string& host) {
        auto& bundle = platform.bundle;
        bundle.set("IDApp", Value{std::int64_t{variants::barrier}});
        bundle.set("CFBundleIdentifier", Value{"com.tamberlo.palisor"});
        bundle.set("CFBundleDisplayName", Value{"Palisor"});
        bundle.set("CFBundleShortVersionString", Value{"1.0"});
        bundle.set("MakerHost", Value{host});
        if (!authorityFile.empty()) bundle.set("MakerAuthority", Value{authorityFile});
        platform.displays.replace(screensFromLayout(sideBySide));
        for (const auto key : {keys::PRIMOACCESSO, keys::PRIMOACCESSOCONSLIDER})
            platform.settings.edit(key, Value{"1"});
        platform.settings.edit(keys::customShortcut, Program::shortcut.toValue());
        platform.effects.keep();
    }

    /// Launches, and returns when the program has started, asked or ended.
    void launch() {
        const auto begun = std::chrono::steady_clock::now();
        try {
            app.applicationDidFinishLaunching();
        } catch (const platform::memory::ProgramEnded&) {
            ended = true;
        }
        took = std::chrono::steady_clock::now() - begun;
    }

    Lines effects(std::initializer_list<std::string_view> names) {
        return platform.effects.lines(names);
    }

    /// How many times `start` has run.
    std::size_t starts() { return effects({"monitor"}).size(); }

    platform::Platform services() {
        auto& p = platform;
        return {p.log,        p.runLoop,    p.application, p.bundle,        p.settings,
                p.files,      p.system,     p.displays,    p.pointer,       p.cursor,
                p.input,      p.keyboard,   p.hotKeys,     p.windows,       p.focus,
                p.workspace,  p.statusItem, p.alerts,      p.notifications, p.sounds,
                p.loginItems, p.power,      p.textCodec,   p.infoWindows,   http,
                json,         p.images,     p.web,         p.calendar};
    }

    platform::memory::MemoryPlatform platform;
    WebInAHurry http{platform.log};
    platform::json::Parser json;
    AppDelegate app{services()};
    bool ended = false;
    std::chrono::duration<double> took{};
};

/// What a launch logs that asked nobody or got nothing.
inline const Lines logOfAPlainStart{R"(log {"text":"macOS 10.14 or high"})"};

} // namespace palisor
