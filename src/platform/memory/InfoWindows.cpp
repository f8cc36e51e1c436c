#include "platform/memory/InfoWindows.h"

#include <algorithm>
#include <cmath>

namespace platform::memory {

namespace {

constexpr Size standardImage{64, 64};
constexpr double letterWidth = 0.5; ///< in font sizes
constexpr double lineHeight = 1.25;

std::size_t letters(std::string_view text) {
    const auto continues = [](char byte) { return (static_cast<unsigned char>(byte) >> 6) == 2; };
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, continues));
}

/// Words go into lines as long as they fit; a word that is longer than a line goes on in the next.
std::size_t linesOf(std::string_view paragraph, std::size_t perLine) {
    std::size_t lines = 1;
    std::size_t column = 0;
    while (!paragraph.empty()) {
        const auto end = std::min(paragraph.find(' '), paragraph.size());
        const std::size_t word = letters(paragraph.substr(0, end));
        if (column != 0 && column + 1 + word > perLine) {
            ++lines;
            column = 0;
        }
        column += (column == 0 ? 0 : 1) + word;
        for (; column > perLine; column -= perLine)
            ++lines;
        paragraph.remove_prefix(std::min(end + 1, paragraph.size()));
    }
    return lines;
}

} // namespace

/// A window that is its properties. The service outlives it.
class MemoryInfoWindow final : public InfoWindow {
  public:
    MemoryInfoWindow(InfoWindows& maker, InfoTarget& hearer) : service(maker), target(hearer) {
        service.last = this;
    }
    ~MemoryInfoWindow() override {
        service.windows.forget(state);
        if (service.last == this) service.last = nullptr;
    }
    MemoryInfoWindow(const MemoryInfoWindow&) = delete;
    MemoryInfoWindow& operator=(const MemoryInfoWindow&) = delete;

    bool isVisible() const override { return service.windows.isShown(state); }
    Rect frame() const override { return state.frame; }
    void setFrame(Rect frame) override { service.windows.move(state, frame); }
    void setTitle(const std::string& newTitle) override { title = newTitle; }
    void setViews(std::vector<InfoView> newViews) override { views = std::move(newViews); }
    void setCollectionBehaviour(std::uint32_t bits) override { state.behaviour = bits; }
    void makeKeyAndOrderFront() override { service.windows.show(state); }
    void orderOut() override { service.windows.hide(state); }

    /// The view of that kind for which `fits`; null where there is none.
    template <class View, class Fits>
    View* find(const Fits& fits) {
        for (InfoView& view : views)
            if (auto* found = std::get_if<View>(&view); found != nullptr && fits(*found))
                return found;
        return nullptr;
    }

    InfoWindows& service;
    InfoTarget& target;
    WindowState state{.kind = WindowKind::info};
    std::string title;
    std::vector<InfoView> views;
};

std::unique_ptr<InfoWindow> InfoWindows::create(InfoTarget& target) {
    return std::make_unique<MemoryInfoWindow>(*this, target);
}

double InfoWindows::textHeight(const std::string& text, double width, double fontSize) const {
    const auto perLine =
        std::max(1.0, std::floor(width / (fontSize * letterWidth))); // also for no width
    std::size_t lines = 0;
    for (std::string_view rest = text;;) {
        const auto end = rest.find('\n');
        lines += linesOf(rest.substr(0, end), static_cast<std::size_t>(perLine));
        if (end == std::string_view::npos) break;
        rest.remove_prefix(end + 1);
    }
    return static_cast<double>(lines) * fontSize * lineHeight;
}

Size InfoWindows::imageSize(const std::string& name) const {
    const auto found = sizes.find(name);
    return found == sizes.end() ? standardImage : found->second;
}

bool InfoWindows::press(std::string_view action) {
    const auto* button =
        last == nullptr
            ? nullptr
            : last->find<InfoButton>([&](const InfoButton& view) { return view.action == action; });
    if (button == nullptr) return false;
    last->target.pressed(InfoButton(*button));
    return true;
}

bool InfoWindows::click(int tag, int state) {
    auto* view =
        last == nullptr ? nullptr : last->find<InfoCheckBox>([&](const InfoCheckBox& each) {
            return each.box.tag == tag;
        });
    if (view == nullptr) return false;
    view->box.state = state;
    last->target.clicked(view->box);
    return true;
}

bool InfoWindows::followLink(std::string_view text, const std::string& link) {
    const auto* view = last == nullptr ? nullptr : last->find<InfoText>([&](const InfoText& each) {
        return each.name == text;
    });
    if (view == nullptr) return false;
    if (!view->asksTarget || !last->target.clickedOnLink(*view, link)) workspace.openURL(link);
    return true;
}

std::string InfoWindows::title() const {
    return last == nullptr ? std::string() : last->title;
}

std::vector<InfoView> InfoWindows::views() const {
    return last == nullptr ? std::vector<InfoView>() : last->views;
}

} // namespace platform::memory
