#pragma once

#include "platform/Menu.h"

#include <array>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace menutests {

using platform::CheckBox;
using platform::Menu;
using platform::MenuItem;

/// Adds an entry that sends `action`, or none if that is empty.
MenuItem& addEntry(Menu& menu, const std::string& text, const std::string& action = {});
void addSeparator(Menu& menu);

struct SliderData {
    double minimum = 0, maximum = 20, value = 10;
    int ticks = 21;
};
/// A submenu that holds a slider with the action "slide" and the label "label".
std::shared_ptr<Menu> sliderMenu(const SliderData& data = {});

/// A submenu that holds a bounds view.
std::shared_ptr<Menu> boundsMenu(std::array<CheckBox, 8>& boxes);

platform::Slider& sliderIn(Menu& submenu);

/// Writes down what it is told, and does what a test wants done then. Any thread may wait.
class Recorder final : public platform::MenuTarget {
  public:
    std::function<void(Menu&)> onOpen;
    std::function<void(MenuItem&)> onChosen;
    std::function<void(platform::Slider&)> onMoved;

    void menuWillOpen(Menu& menu) override;
    void chosen(MenuItem& item) override;
    void moved(platform::Slider& slider) override;
    void clicked(CheckBox& box) override;

    std::vector<std::string> lines() const;
    std::string last() const;
    /// Waits for a line; false when none comes.
    bool waitFor(const std::string& line);

    std::function<std::string()> event; ///< the current event as a text

  private:
    void write(const std::string& line);

    mutable std::mutex guard;
    std::condition_variable changed;
    std::vector<std::string> written;
};

} // namespace menutests
