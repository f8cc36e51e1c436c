#pragma once

#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "testing/desktop/TestWindow.h"
#include "testing/eye/Eye.h"

#include <functional>
#include <string>

// The program itself on a private desktop, with input from outside and nothing but what a person
// sees for evidence.

namespace desktop {

using support::Area;
using support::Colour;
using support::Spot;

/// Asks again and again, without sleeping, until it holds; false when a generous time is up.
bool holdsSoon(const std::function<bool()>& condition);

/// How the program is set before it starts. Every installation but the first has these keys.
struct Setting {
    std::string product = "palisor";
    bool active = true;
    bool pushOption = false;
    int velocity = 50;
    int othersDark = 15;                ///< of 20
    bool hold = true;                   ///< --hold
    std::string more{};                 ///< further entries of the settings file
    std::vector<std::string> options{}; ///< further ones of the command line
};

/// Entries of the settings file.
std::string flagEntry(const std::string& key, bool on);
std::string textEntry(const std::string& key, const std::string& text);

struct Product {
    explicit Product(const support::PrivateDesktop::Options& options);
    explicit Product(const std::string& layout = "1920x1080+0+0,1280x1024+1920+56");

    /// Puts the cursor on the middle of the primary monitor and starts the program there.
    void start(const Setting& setting = {});
    /// Starts it and does not wait for anything.
    void spawn(const Setting& setting = {});

    /// Switches it off, or on again, by the first entry of its menu. Needs the session bus.
    void switchOver();

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

    std::filesystem::path settingsFile() const;
    /// The text of the settings file.
    std::string storedSettings() const;

    support::Layout layout;
    support::PrivateDesktop desktop;
    support::Hand hand{desktop.display()};
    support::Eye eye{desktop.display()};
    std::unique_ptr<support::ChildProcess> program;
    std::string name = "palisor"; ///< of the product that was started last
};

} // namespace desktop
