#include "Stage.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
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

void writeSettings(const std::filesystem::path& file, const Setting& setting) {
    std::ofstream out(file);
    out << R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
    <key>PRIMOACCESSO</key><string>1</string>
    <key>CHECK_0</key><string>1</string>
    <key>customShortcut</key><dict><key>keyCode</key><integer>40</integer>
    <key>modifierFlags</key><integer>1310720</integer></dict>
    <key>VELOCITY_OPTION</key>)"
        << (setting.pushOption ? "<true/>" : "<false/>") << R"(
    <key>VELOCITY</key><integer>)"
        << setting.velocity << R"(</integer>
    <key>OTHERS_DARK</key><integer>)"
        << setting.othersDark << R"(</integer>
</dict>
</plist>
)";
    if (!out.flush()) throw std::runtime_error("cannot write " + file.string());
}

} // namespace

Stage::Stage(const std::filesystem::path& command, const std::filesystem::path& folder)
    : desktop(stageOptions()),
      hand(desktop.display()),
      eye(desktop.display()),
      leftWindow(
          (desktop.startWindowManager("openbox"), desktop.startCompositor(), desktop.display()),
          left, paper, "left"),
      rightWindow(desktop.display(), right, paper, "right"),
      program(command),
      pictures(folder) {
    std::filesystem::create_directories(pictures);
    if (!waitForAllBright()) throw std::runtime_error("the windows of the stage are not seen");
}

void Stage::startProgram(const Setting& setting) {
    writeSettings(desktop.configFolder() / "com.tamberlo.palisor.plist", setting);
    othersDark = setting.othersDark;
    hand.moveTo(leftMiddle.x, leftMiddle.y);
    process = desktop.spawn(program);
}

int Stage::endProgram() {
    return process->end();
}

std::string Stage::programLog() const {
    return process->output() + process->errors();
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

void Stage::takePicture(const std::string& name) {
    eye.screenshot(pictures / (name + ".png"));
}

} // namespace demo
