#include "platform/memory/Displays.h"

namespace platform::memory {

void Displays::replace(const std::vector<Rect>& frames, std::size_t mainIndex) {
    attached.clear();
    for (const Rect& frame : frames) {
        const auto number = static_cast<std::uint32_t>(attached.size() + 1);
        attached.push_back(
            {.id = ScreenId{number}, .frame = frame, .name = "Screen-" + std::to_string(number)});
    }
    main = attached.empty() ? ScreenId::none : attached.at(mainIndex).id;
}

void Displays::notify() const {
    if (handler) handler();
}

void Displays::change(const std::vector<Rect>& frames, std::size_t mainIndex) {
    replace(frames, mainIndex);
    notify();
}

} // namespace platform::memory
