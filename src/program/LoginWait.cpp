#include "program/LoginWait.h"

#include <utility>

namespace {

constexpr std::size_t enough = 2;
constexpr double secondsOfQuiet = 2;
constexpr double longest = 10; // a cable that comes and goes must not keep the program away

} // namespace

LoginWait::~LoginWait() {
    if (whenOver) displays.onChange({});
    runLoop.invalidate(quiet);
    runLoop.invalidate(limit);
}

void LoginWait::start(std::function<void()> over) {
    if (displays.screens().size() >= enough) {
        over();
        return;
    }
    log.write("waiting for a second monitor");
    whenOver = std::move(over);
    displays.onChange([this] { look(); });
    limit = runLoop.schedule(longest, false, "loginWait", [this] { end(); });
    look();
}

// Not at once for two screens, as the handler that this is called from gives way to the next one.
void LoginWait::look() {
    const bool complete = displays.screens().size() >= enough;
    runLoop.invalidate(quiet);
    quiet = runLoop.schedule(complete ? 0 : secondsOfQuiet, false, "loginWait", [this] { end(); });
}

void LoginWait::end() {
    runLoop.invalidate(quiet);
    runLoop.invalidate(limit);
    displays.onChange({});
    std::exchange(whenOver, {})();
}
