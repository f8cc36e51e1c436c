#include "testing/desktop/Product.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace desktop {

std::string programs() {
    return PROGRAMS;
}

Product::Product(const std::string& layoutText)
    : layout(support::parseLayout(layoutText)), desktop(layoutText) {}

Product::Product(const support::PrivateDesktop::Options& options)
    : layout(support::parseLayout(options.layout)), desktop(options) {}

void Product::useDictionary(const std::string& product, const Entries& dictionary) {
    namespace fs = std::filesystem;
    const fs::path bin = desktop.home() / "tree/bin", share = desktop.home() / "tree/share/palisor";
    fs::create_directories(bin);
    fs::create_directories(share / "products" / product);
    fs::copy_file(fs::path(programs()) / "palisor", bin / product);
    fs::copy_file(fs::path(programs()) / "palisor-tray", bin / "palisor-tray");
    fs::create_symlink(fs::path(programs()) / "x11-session.so", bin / "x11-session.so");
    fs::create_directory_symlink(RESOURCES "/images", share / "images");
    std::ofstream(share / "products" / product / "Info.plist") << propertyList(dictionary);
    folder = bin;
}

void Product::spawn(const Setting& setting) {
    name = setting.product;
    Entries entries = setting.more;
    entries.insert({{"ATTIVO", flag(setting.active)},
                    {"VELOCITY_OPTION", flag(setting.pushOption)},
                    {"VELOCITY", number(setting.velocity)},
                    {"OTHERS_DARK", number(setting.othersDark)}});
    entries.merge(pastTheFirstStart());
    std::ofstream(settingsFile()) << propertyList(entries);
    std::vector<std::string> options = setting.options;
    if (!setting.hold) options.insert(options.end(), {"--hold", "off"});
    program = run(options);
}

std::unique_ptr<support::ChildProcess> Product::run(const std::vector<std::string>& options) const {
    // What it tells its developers is how a test knows how far it is.
    auto all = options;
    all.insert(all.begin(), "--verbose");
    return desktop.spawn(folder + "/" + name, all);
}

void Product::start(const Setting& setting) {
    moveToMiddle(0);
    spawn(setting);
    const bool darkens = setting.active && name == "palisor";
    if (!(darkens ? waitUntil([&] { return isCovered(1); }) : isUpSoon()))
        throw std::runtime_error("the program did not start: " + program->errors());
}

// The start is one turn of the run loop; when that answers a question, everything is in place. On
// a desktop without a bus nobody can ask, but it says later that it has found no tray.
bool Product::isUpSoon() const {
    if (!saysThatItStarts()) return false;
    if (!desktop.environment().contains("DBUS_SESSION_BUS_ADDRESS"))
        return program->waitForText("no tray");
    std::string path = "/" + identifier();
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    return !desktop
                .call({"--dest=" + identifier(), path,
                       "org.freedesktop.DBus.Introspectable.Introspect"})
                .empty();
}

std::vector<Area> Product::menus() const {
    std::vector<Area> areas;
    for (const auto& window : eye.windows())
        if (window.mapped && window.overrideRedirect && !window.inputOnly &&
            window.area.width > 60 && window.area.width < 600)
            areas.push_back(window.area);
    return areas;
}

bool Product::waitForMenus(std::size_t count) {
    return eye.waitUntilSeen([&] { return menus().size() == count; });
}

void Product::openMenu() {
    const auto second = run();
    if (second->wait() != 0 || !waitForMenus(1) ||
        !waitUntil([&] { return connection.keyboardIsGrabbed(); }))
        throw std::runtime_error("the menu did not open: " + program->errors());
}

void Product::choose(int steps) {
    openMenu();
    for (int step = 0; step < std::abs(steps); ++step)
        hand.type(steps > 0 ? support::key::down : support::key::up);
    hand.type(support::key::enter);
    if (!waitForMenus(0)) throw std::runtime_error("the menu did not close: " + program->errors());
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
    return waitUntil([&] { return isCovered(covered) && !isCovered(bare); });
}

bool Product::nothingCoveredSoon() const {
    return waitUntil([&] {
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
    return waitUntil([&] { return cursorIsOn(index); });
}

std::filesystem::path Product::settingsFile() const {
    return desktop.configFolder() / (identifier() + ".plist");
}

std::string Product::storedSettings() const {
    std::ifstream file(settingsFile());
    std::string all{std::istreambuf_iterator<char>(file), {}};
    std::erase_if(all, [](char letter) { return letter == '\n' || letter == '\t'; });
    return all;
}

bool Product::stores(const std::string& part) const {
    return waitUntil([&] { return storedSettings().find(part) != std::string::npos; });
}

} // namespace desktop
