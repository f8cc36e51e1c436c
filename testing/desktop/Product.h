#pragma once

#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/Settings.h"
#include "testing/desktop/TestWindow.h"
#include "testing/eye/Eye.h"

// The program itself on a private desktop, with input from outside and nothing but what a person
// sees for evidence.

namespace desktop {

using support::Area;
using support::Colour;
using support::Spot;
using support::waitUntil;

/// Reports a second, as of an ordinary gaming mouse.
inline constexpr int mouseRate = 1000;

/// The folder of the programs that were built.
std::string programs();

/// How the program is set before it starts.
struct Setting {
    std::string product = "palisor";
    bool active = true;
    bool pushOption = false;
    int velocity = 50;
    int othersDark = 15;                ///< of 20
    bool hold = true;                   ///< --hold
    Entries more{};                     ///< of the settings file, before all others
    std::vector<std::string> options{}; ///< further ones of the command line
};

struct Product {
    explicit Product(const support::PrivateDesktop::Options& options);
    explicit Product(const std::string& layout = "1920x1080+0+0,1280x1024+1920+56");

    /// The shipped dictionaries hold reserved addresses, which nothing is offered of. From now on
    /// the product is started from a tree in which its dictionary holds these entries and no more.
    void useDictionary(const std::string& product, const Entries& dictionary);

    /// Puts the cursor on the middle of the primary monitor, starts the program there and returns
    /// when everything is in place. Throws std::runtime_error where it does not come to that.
    void start(const Setting& setting = {});
    /// Starts it and does not wait for anything.
    void spawn(const Setting& setting = {});
    /// Starts the product that was started last once more, on the settings as they are.
    std::unique_ptr<support::ChildProcess> run(const std::vector<std::string>& options = {}) const;
    /// The program has told that it starts; what it does next is a matter of milliseconds.
    bool saysThatItStarts() const { return program->waitForText("macOS 10.14"); }
    /// And everything is in place.
    bool isUpSoon() const;

    /// Opens its menu by a second start, and returns when it takes keys. Needs the session bus.
    void openMenu();
    /// Opens it and chooses the entry that so many downward steps reach, or upward ones below zero.
    void choose(int steps);
    /// Switches it off, or on again, by the first entry of its menu.
    void switchOver() { choose(1); }
    /// Windows of the toolkit's menus, lowest first; X root coordinates.
    std::vector<Area> menus() const;
    bool waitForMenus(std::size_t count);

    /// On the monitor with that number in the layout, X root coordinates.
    const Area& monitor(std::size_t index) const { return layout[index].area; }
    Spot middle(std::size_t index) const;
    void moveToMiddle(std::size_t index);
    /// To 30 pixels from the right (1) or left (-1) edge of the monitor.
    void moveNextTo(std::size_t index, int edge);

    /// Whether a window of the program lies over the middle of the monitor.
    bool isCovered(std::size_t index) const;
    bool coveredSoon(std::size_t covered, std::size_t bare) const;
    bool nothingCoveredSoon() const;

    bool cursorIsOn(std::size_t index) const;
    /// The cursor is there once the program has done what it had to do.
    bool cursorEndsOn(std::size_t index) const;

    std::string identifier() const { return "com.tamberlo." + name; }
    std::filesystem::path settingsFile() const;
    /// The text of the settings file without white space between its entries.
    std::string storedSettings() const;
    /// Whether that text is in the settings file before long.
    bool stores(const std::string& part) const;

    support::Layout layout;
    support::PrivateDesktop desktop;
    support::Hand hand{desktop.display()};
    support::Eye eye{desktop.display()};
    std::unique_ptr<support::ChildProcess> program;
    std::string name = "palisor";    ///< of the product that was started last
    std::string folder = programs(); ///< the programs that are started lie there

  private:
    support::XConnection connection{desktop.display()};
};

} // namespace desktop
