#include "testing/desktop/Product.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace desktop {

namespace {

std::string plist(const Setting& setting) {
    std::ostringstream text;
    text << R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>
<key>PRIMOACCESSO</key><string>1</string>
<key>CHECK_0</key><string>1</string>
<key>CHECK_1</key><string>0</string>
<key>RECOMMENDAUTOLOGIN</key><string>1</string>
<key>customShortcut</key><dict>
<key>keyCode</key><integer>40</integer><key>modifierFlags</key><integer>1310720</integer></dict>
)" << flagEntry("ATTIVO", setting.active)
         << flagEntry("VELOCITY_OPTION", setting.pushOption) << "<key>VELOCITY</key><integer>"
         << setting.velocity << "</integer><key>OTHERS_DARK</key><integer>" << setting.othersDark
         << "</integer>" << setting.more << "</dict></plist>\n";
    return text.str();
}

} // namespace

std::string flagEntry(const std::string& key, bool on) {
    return "<key>" + key + "</key>" + (on ? "<true/>" : "<false/>");
}

std::string textEntry(const std::string& key, const std::string& text) {
    return "<key>" + key + "</key><string>" + text + "</string>";
}

bool holdsSoon(const std::function<bool()>& condition) {
    const auto deadline = support::Clock::now() + support::generous;
    while (!condition())
        if (support::Clock::now() > deadline) return false;
    return true;
}

Product::Product(const std::string& layoutText)
    : layout(support::parseLayout(layoutText)), desktop(layoutText) {}

Product::Product(const support::PrivateDesktop::Options& options)
    : layout(support::parseLayout(options.layout)), desktop(options) {}

void Product::spawn(const Setting& setting) {
    name = setting.product;
    std::ofstream(settingsFile()) << plist(setting);
    std::vector<std::string> arguments{"--product", name, "--hold", setting.hold ? "on" : "off"};
    arguments.insert(arguments.end(), setting.options.begin(), setting.options.end());
    program = desktop.spawn(PALISOR, arguments);
}

void Product::start(const Setting& setting) {
    moveToMiddle(0);
    spawn(setting);
    // Without a dark window to be seen: what it says of the tray that is not there comes from its
    // run loop, when everything is in place.
    const auto isUp = [&] {
        return setting.active && name == "palisor"
                   ? isCovered(1)
                   : program->errors().find("no tray") != std::string::npos;
    };
    if (!holdsSoon(isUp))
        throw std::runtime_error("the program did not start: " + program->errors());
}

// A second start brings the menu of the first one up.
void Product::switchOver() {
    const auto menuIsShown = [&] {
        return std::ranges::any_of(eye.windows(), [](const support::SeenWindow& window) {
            return window.mapped && window.overrideRedirect && !window.inputOnly &&
                   window.area.width > 60 && window.area.width < 600;
        });
    };
    const auto second = desktop.spawn(PALISOR, {"--product", name});
    if (second->wait() != 0 || !eye.waitUntilSeen(menuIsShown))
        throw std::runtime_error("the menu did not open: " + program->errors());
    hand.type(support::key::down);
    hand.type(support::key::enter);
    if (!eye.waitUntilSeen([&] { return !menuIsShown(); }))
        throw std::runtime_error("the menu did not close: " + program->errors());
}

Spot Product::middle(std::size_t index) const {
    const Area& area = monitor(index);
    return {area.x + area.width / 2, area.y + area.height / 2};
}

void Product::moveToMiddle(std::size_t index) {
    hand.moveTo(middle(index).x, middle(index).y);
}

void Product::moveNextTo(std::size_t index, int edge) {
    const Area& area = monitor(index);
    const int x = edge > 0 ? area.x + area.width - 30 : area.x + 29;
    hand.moveTo(x, middle(index).y);
}

bool Product::isCovered(std::size_t index) const {
    const auto windows = eye.windows();
    return std::ranges::any_of(windows, [&](const support::SeenWindow& window) {
        return window.mapped && window.overrideRedirect && window.area == monitor(index);
    });
}

bool Product::coveredSoon(std::size_t covered, std::size_t bare) const {
    return holdsSoon([&] { return isCovered(covered) && !isCovered(bare); });
}

bool Product::nothingCoveredSoon() const {
    return holdsSoon([&] {
        for (std::size_t index = 0; index < layout.size(); ++index)
            if (isCovered(index)) return false;
        return true;
    });
}

bool Product::cursorIsOn(std::size_t index) const {
    const Spot at = eye.cursor();
    return monitor(index).contains(at.x, at.y);
}

bool Product::cursorEndsOn(std::size_t index) const {
    return holdsSoon([&] { return cursorIsOn(index); });
}

std::filesystem::path Product::settingsFile() const {
    return desktop.configFolder() / ("com.tamberlo." + name + ".plist");
}

std::string Product::storedSettings() const {
    std::ifstream file(settingsFile());
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace desktop
