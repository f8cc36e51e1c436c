#include "TrayDesktop.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace traytests {

namespace {

using support::Area;
using support::Colour;
using support::Picture;

constexpr Colour pictureColour{255, 0, 255}; // no theme has it
constexpr int smallestIcon = 14;

// Of the screen; panels are at its upper and lower edge.
constexpr int width = 1280, height = 800;
constexpr std::array<Area, 2> panelEdges{Area{0, 0, width, 64}, Area{0, height - 64, width, 64}};

constexpr const char* square = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<rect width="16" height="16" fill="#ff00ff"/></svg>)";
constexpr const char* cross = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 16 16">
<path d="M5 0h6v5h5v6h-5v5H5v-5H0V5h5z"/></svg>)";

int brightness(const Colour& colour) {
    return (colour.red + colour.green + colour.blue) / 3;
}

support::PrivateDesktop::Options optionsOf(int depth) {
    support::PrivateDesktop::Options options;
    options.layout = "1280x800+0+0";
    options.depth = depth;
    return options;
}

} // namespace

TrayDesktop::TrayDesktop(int depth) : desktop(optionsOf(depth)) {
    write(picturesFolder() / "square.svg", square);
    write(picturesFolder() / "cross.svg", cross);
    desktop.startWindowManager("openbox");
}

std::unique_ptr<support::ChildProcess> TrayDesktop::startPlainTray(Look look) {
    return traytests::startHost(desktop, Host::plainTray, look);
}

void TrayDesktop::startHost(Host host, Look look) {
    hostProcess = traytests::startHost(desktop, host, look);
}

void TrayDesktop::startShippedLxqtPanel(const std::string& theme) {
    write(desktop.configFolder() / "lxqt/lxqt.conf", "[General]\ntheme=" + theme + "\n");
    const std::filesystem::path shipped = "/usr/share/lxqt/panel.conf";
    std::filesystem::copy_file(shipped, desktop.configFolder() / "lxqt/panel.conf",
                               std::filesystem::copy_options::overwrite_existing);
    hostProcess = desktop.spawn("lxqt-panel");
}

void TrayDesktop::startShippedTint2(const std::string& configuration) {
    hostProcess = desktop.spawn("tint2", {"-c", configuration});
}

void TrayDesktop::killHost() {
    hostProcess->signal(SIGKILL);
    hostProcess->wait();
    hostProcess.reset();
}

void TrayDesktop::startProgram() {
    programProcess = desktop.spawn(TRAY_PROGRAM, {picturesFolder(), "square", "cross"});
    programProcess->waitForText("started");
}

std::optional<Area> TrayDesktop::pictureArea() const {
    int left = width, top = height, right = -1, bottom = -1;
    int count = 0;
    for (const Area& edge : panelEdges) {
        const Picture seen = eye->picture(edge);
        for (int y = edge.y; y < edge.y + edge.height; ++y)
            for (int x = edge.x; x < edge.x + edge.width; ++x)
                if (seen.at(x, y) == pictureColour) {
                    left = std::min(left, x);
                    right = std::max(right, x);
                    top = std::min(top, y);
                    bottom = std::max(bottom, y);
                    ++count;
                }
    }
    const Area area{left, top, right - left + 1, bottom - top + 1};
    // A square without holes, or it is not all of it.
    if (count == 0 || area.width != area.height || count != area.width * area.height) return {};
    return area;
}

// When a panel with another program's window in it is killed, Xorg 21.1 now and then sends those
// who watch for damage a packet of zeros, after which libxcb takes every reply for lost. A new
// connection is whole; to a server that is really gone there is none.
bool TrayDesktop::waitUntilSeen(const std::function<bool()>& expected) {
    constexpr int mostFaults = 5;
    for (int fault = 0;; ++fault)
        try {
            return eye->waitUntilSeen(expected);
        } catch (const std::runtime_error&) {
            if (fault == mostFaults) throw;
            eye = std::make_unique<support::Eye>(desktop.display());
        }
}

std::optional<Area> TrayDesktop::waitForPicture() {
    std::optional<Area> seen;
    waitUntilSeen([&] {
        seen = pictureArea();
        return seen && seen->width >= smallestIcon;
    });
    return seen;
}

bool TrayDesktop::waitForNoPicture() {
    return waitUntilSeen([&] {
        return std::none_of(panelEdges.begin(), panelEdges.end(), [&](const Area& edge) {
            const Picture seen = eye->picture(edge);
            return std::find(seen.pixels.begin(), seen.pixels.end(), pictureColour) !=
                   seen.pixels.end();
        });
    });
}

bool TrayDesktop::clickArrives(const Area& icon, int xButton, int printedButton) {
    const int x = icon.x + icon.width / 2;
    const int y = icon.y + icon.height / 2;
    const std::string text = "click " + std::to_string(clicksSoFar() + 1) + " of button " +
                             std::to_string(printedButton);
    hand.moveTo(x, y);
    hand.click(xButton);
    return programProcess->waitForText(text);
}

bool TrayDesktop::clicksComeToArrive(const Area& icon) {
    constexpr int tries = 30;
    const std::string text = "click " + std::to_string(clicksSoFar() + 1) + " of button 0";
    hand.moveTo(icon.x + icon.width / 2, icon.y + icon.height / 2);
    for (int i = 0; i < tries; ++i) {
        hand.click(1);
        if (programProcess->waitForText(text, support::milliseconds(1000))) return true;
    }
    return false;
}

long TrayDesktop::clicksSoFar() const {
    const std::string output = programProcess->output();
    long clicks = 0;
    for (auto at = output.find("click "); at != output.npos; at = output.find("click ", at + 1))
        ++clicks;
    return clicks;
}

bool TrayDesktop::waitForTemplate(const Area& icon) {
    // The host may light the icon while the cursor is over it.
    hand.moveTo(640, 400);
    return waitUntilSeen([&] {
        const Picture seen = eye->picture(icon);
        const Colour middle = seen.at(icon.x + icon.width / 2, icon.y + icon.height / 2);
        const int right = icon.x + icon.width - 2;
        const int bottom = icon.y + icon.height - 2;
        for (const Colour& corner : {seen.at(icon.x + 1, icon.y + 1), seen.at(right, bottom)})
            if (std::abs(brightness(corner) - brightness(middle)) < 100) return false;
        return middle != pictureColour;
    });
}

int TrayDesktop::brightnessInTheMiddle(const Area& icon) const {
    return brightness(eye->colour(icon.x + icon.width / 2, icon.y + icon.height / 2));
}

void TrayDesktop::keepPicture(const std::string& name) const {
    if (const char* folder = std::getenv("PALISOR_PICTURES"))
        eye->screenshot(std::filesystem::path(folder) / (name + ".png"));
}

} // namespace traytests
