#include "Stage.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace demo {

using namespace support;

namespace {

constexpr Colour paper{220, 220, 210};
constexpr int fullDarkness = 20;

// What a user can watch comes first: a window on his own desktop.
PrivateDesktop::Options stageOptions() {
    PrivateDesktop::Options options;
    options.layout = "960x600+0+0,800x600+960+0";
    const char* display = std::getenv("DISPLAY");
    if (display != nullptr && *display != '\0') {
        options.hostDisplay = display;
        options.servers.insert(options.servers.begin(), ServerKind::xephyr);
    }
    return options;
}

} // namespace

Stage::Stage(const std::filesystem::path& programs, const std::filesystem::path& where)
    : Product(stageOptions()),
      leftWindow(
          (desktop.startWindowManager("openbox"), desktop.startCompositor(), desktop.display()),
          left, paper, "left"),
      rightWindow(desktop.display(), right, paper, "right"),
      pictures(where) {
    folder = programs;
    std::filesystem::create_directories(pictures);
    if (!waitForAllBright()) throw std::runtime_error("the windows of the stage are not seen");
}

void Stage::startProgram(const desktop::Setting& setting) {
    othersDark = setting.othersDark;
    moveToMiddle(0);
    spawn(setting);
}

Colour Stage::middle(const Area& monitor) const {
    return eye.colour(monitor.x + monitor.width / 2, monitor.y + monitor.height / 2);
}

bool Stage::isBright(const Area& monitor) const {
    return middle(monitor) == paper;
}

bool Stage::isDark(const Area& monitor) const {
    const Colour seen = middle(monitor);
    const auto darkened = [&](int value, int seenValue) {
        return std::abs(seenValue - value * (fullDarkness - othersDark) / fullDarkness) <= 3;
    };
    return darkened(paper.red, seen.red) && darkened(paper.green, seen.green) &&
           darkened(paper.blue, seen.blue);
}

bool Stage::waitForDark(const Area& monitor, const Area& bright) {
    return eye.waitUntilSeen([&] { return isDark(monitor) && isBright(bright); },
                             milliseconds(10'000));
}

bool Stage::waitForAllBright() {
    return eye.waitUntilSeen([&] { return isBright(left) && isBright(right); },
                             milliseconds(10'000));
}

void Stage::tell(bool seen, std::string_view what, std::string_view details) {
    std::printf("%-8s  %.*s", seen ? "ok" : "NOT SEEN", static_cast<int>(what.size()), what.data());
    if (!details.empty()) std::printf(" (%.*s)", static_cast<int>(details.size()), details.data());
    std::printf("\n");
    std::fflush(stdout);
    if (!seen) ++missing;
}

void Stage::takePicture(const std::string& title) {
    eye.screenshot(pictures / (title + ".png"));
}

} // namespace demo
