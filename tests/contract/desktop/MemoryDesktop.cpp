#include "contract/desktop/Desktop.h"
#include "platform/memory/MemoryPlatform.h"

namespace contract {

namespace {

using platform::Shortcut;

class MemoryDesktop final : public Desktop {
  public:
    MemoryDesktop() { plugSecond(); }

    platform::Displays& displays() override { return all.displays; }
    platform::Pointer& pointer() override { return all.pointer; }
    platform::InputEvents& input() override { return all.input; }
    platform::Windows& windows() override { return all.windows; }
    platform::HotKeys& hotKeys() override { return all.hotKeys; }
    platform::Settings& settings() override { return all.settings; }

    void moveTo(int x, int y) override {
        all.pointer.place({static_cast<double>(x), static_cast<double>(y)});
        deliver(platform::EventType::mouseMoved);
    }
    bool push(int step, const std::function<bool()>& reached) override {
        const auto at = all.pointer.location();
        moveTo(static_cast<int>(at.x) + step, static_cast<int>(at.y));
        return reached();
    }
    void click() override {
        deliver(platform::EventType::leftMouseDown);
        deliver(platform::EventType::leftMouseUp);
    }
    void pressAltAnd(int functionKey) override {
        constexpr std::uint16_t f2 = 120, f3 = 99;
        all.hotKeys.press({functionKey == 2 ? f2 : f3, Shortcut::option});
    }
    void setOwnWindowActive(bool) override {}
    bool unplugSecond() override {
        all.displays.change({{0, 0, 1920, 1080}});
        return true;
    }
    void plugSecond() override { lowerSecond(0); }
    void lowerSecond(int pixels) override {
        all.displays.change({{0, 0, 1920, 1080}, {1920, 56.0 - pixels, 1280, 1024}});
    }
    bool until(const std::function<bool()>& reached) override { return reached(); }

  private:
    void deliver(platform::EventType type) {
        all.input.deliver({.type = type, .location = all.pointer.location()});
    }

    platform::memory::MemoryPlatform all;
};

} // namespace

const Kind memoryDesktop{"Memory",
                         [] { return std::unique_ptr<Desktop>(std::make_unique<MemoryDesktop>()); },
                         [] { return std::optional<std::string>(); }};

} // namespace contract
