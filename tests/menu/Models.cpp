#include "Models.h"

#include "testing/Child.h"

#include <algorithm>

namespace menutests {

MenuItem& addEntry(Menu& menu, const std::string& text, const std::string& action) {
    auto item = std::make_unique<MenuItem>();
    item->title = text;
    item->text = text;
    item->action = action;
    item->madeWithAction = !action.empty();
    return *menu.items.emplace_back(std::move(item));
}

void addSeparator(Menu& menu) {
    menu.items.emplace_back(std::make_unique<MenuItem>())->separator = true;
}

std::shared_ptr<Menu> sliderMenu(const SliderData& data) {
    auto menu = std::make_shared<Menu>();
    auto& item = *menu->items.emplace_back(std::make_unique<MenuItem>());
    item.view = platform::SliderView{
        .slider = {data.minimum, data.maximum, data.value, data.ticks, "slide"},
        .label = std::make_shared<platform::Label>(platform::Label{"label", "at first"})};
    return menu;
}

std::shared_ptr<Menu> boundsMenu(std::array<CheckBox, 8>& boxes) {
    auto menu = std::make_shared<Menu>();
    platform::BoundsView view;
    for (std::size_t index = 0; index < 4; ++index) {
        boxes[index].tag = static_cast<int>(index) + 1;
        boxes[index + 4].tag = static_cast<int>(index) + 11;
        view.corners[index] = {"corner", &boxes[index]};
        view.sides[index] = {"side", &boxes[index + 4]};
    }
    view.explanation = "Tick the sides and corners at which something happens to the pointer.";
    menu->items.emplace_back(std::make_unique<MenuItem>())->view = view;
    return menu;
}

platform::Slider& sliderIn(Menu& submenu) {
    return std::get<platform::SliderView>(submenu.items.front()->view).slider;
}

void Recorder::write(const std::string& line) {
    const std::lock_guard lock(guard);
    written.push_back(event ? line + " " + event() : line);
    changed.notify_all();
}

// The line comes last, so that whoever waits for it finds everything done.
void Recorder::menuWillOpen(Menu& menu) {
    if (onOpen) onOpen(menu);
    write("open");
}

void Recorder::chosen(MenuItem& item) {
    const std::string line = "chosen " + item.action;
    if (onChosen) onChosen(item);
    write(line);
}

void Recorder::moved(platform::Slider& slider) {
    const std::string line = "moved " + std::to_string(static_cast<int>(slider.value));
    if (onMoved) onMoved(slider);
    write(line);
}

void Recorder::clicked(CheckBox& box) {
    write("box " + std::to_string(box.tag) + "=" + std::to_string(box.state));
}

std::vector<std::string> Recorder::lines() const {
    const std::lock_guard lock(guard);
    return written;
}

std::string Recorder::last() const {
    const std::lock_guard lock(guard);
    return written.empty() ? "" : written.back();
}

bool Recorder::waitFor(const std::string& line) {
    std::unique_lock lock(guard);
    return changed.wait_for(lock, support::generous, [&] {
        return std::find(written.begin(), written.end(), line) != written.end();
    });
}

} // namespace menutests
