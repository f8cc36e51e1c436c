#include "platform/memory/Displays.h"

namespace platform::memory {

void Displays::replace(const std::vector<Rect>& frames, std::size_t mainIndex) {
    attached.clear();
    for (const Rect& frame : frames)
        attached.push_back({static_cast<ScreenId>(attached.size() + 1), frame});
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
