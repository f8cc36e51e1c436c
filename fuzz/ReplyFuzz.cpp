#include "app/AppDelegate.h"
#include "platform/memory/MemoryPlatform.h"

#include <cstdint>
#include <cstdlib>

// A launch whose reply is the input: its first byte is the answer to a question, the rest is what
// the server sends.

namespace {

using platform::Value;

struct Seen {
    int starts = 0;
    int alerts = 0;
    int opened = 0;
    int ends = 0;
    int logs = 0;
};

void mustHold(bool condition) {
    if (!condition) std::abort();
}

Seen launchWith(std::string reply, int answer) {
    platform::memory::MemoryPlatform desktop;
    desktop.bundle.set("IDApp", Value{std::int64_t{8}});
    desktop.bundle.set("CFBundleIdentifier", Value{"com.example.fuzz"});
    desktop.displays.replace({{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}});
    desktop.settings.edit("PRIMOACCESSO", Value{"1"});
    desktop.settings.edit("customShortcut", platform::Shortcut{40, platform::Shortcut::control |
                                                                       platform::Shortcut::command}
                                                .toValue());
    desktop.http.setReply(std::move(reply));
    desktop.alerts.setAnswers({answer});
    Seen seen;
    desktop.effects.setSink([&seen](const platform::memory::Effect& effect) {
        seen.starts += effect.name == "monitor" ? 1 : 0;
        seen.alerts += effect.name == "alert" ? 1 : 0;
        seen.opened += effect.name == "openURL" ? 1 : 0;
        seen.ends += effect.name == "exit" ? 1 : 0;
        seen.logs += effect.name == "log" ? 1 : 0;
    });
    palisor::AppDelegate app{desktop.services()};
    try {
        app.applicationDidFinishLaunching();
    } catch (const platform::memory::ProgramEnded&) {
    }
    desktop.effects.setSink({});
    return seen;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const int answer = data[0] % 3 - 1;
    const Seen seen =
        launchWith(std::string(reinterpret_cast<const char*>(data) + 1, size - 1), answer);
    mustHold(seen.alerts <= 1 && seen.opened <= seen.alerts);
    mustHold(seen.starts + seen.ends == (seen.alerts == 1 && answer == -1 ? 0 : 1));
    mustHold(seen.alerts == 1 || seen.starts == 1);
    mustHold(seen.logs == seen.starts); // the start's own line
    return 0;
}
