#include "contract/desktop/Desktop.h"
#include "sway/SwayServices.h"
#include "testing/sway/SwayKeys.h"
#include "x11/TestLoop.h"

#include <linux/input-event-codes.h>

namespace contract {

namespace {

class SwayDesktop final : public Desktop {
  public:
    SwayDesktop() { services.hand.moveTo(900, 500); }

    platform::Displays& displays() override { return services.desktop->displays(); }
    platform::Pointer& pointer() override { return services->pointer; }
    platform::InputEvents& input() override { return services->input; }
    platform::Windows& windows() override { return services->windows; }
    platform::HotKeys& hotKeys() override { return services->hotKeys; }
    platform::Settings& settings() override { return services.settings; }

    void moveTo(int x, int y) override { services.hand.moveTo(x, y); }
    bool push(int step, const std::function<bool()>& reached) override {
        return loop.runUntil([&] {
            if (!reached()) services.hand.relative(step, 0);
            return reached();
        });
    }
    void click() override {
        services.hand.pressButton();
        services.hand.releaseButton();
    }
    void pressAltAnd(int functionKey) override {
        const auto key = static_cast<std::uint32_t>(KEY_F2 + functionKey - 2);
        keys.press(KEY_LEFTALT);
        keys.press(key);
        keys.release(key);
        keys.release(KEY_LEFTALT);
    }
    void setOwnWindowActive(bool active) override {
        services.ownWindowActive = active;
        services.desktop->ownWindowChanged();
    }
    bool unplugSecond() override {
        services.sway.run("output HEADLESS-2 disable");
        return services.sway.ask("get_outputs").find(R"("active": false)") != std::string::npos;
    }
    void plugSecond() override { services.sway.run("output HEADLESS-2 enable"); }
    void lowerSecond(int pixels) override {
        services.sway.run("output HEADLESS-2 position 1920 " + std::to_string(pixels));
    }
    bool until(const std::function<bool()>& reached) override { return loop.runUntil(reached); }

  private:
    x11tests::TestLoop loop;
    swaytests::Services services{loop, [this](std::function<void()> work) {
                                     loop.schedule(0, false, "later", std::move(work));
                                 }};
    support::SwayKeys keys{services.sway};
};

} // namespace

const Kind swayDesktop{"Sway",
                       [] { return std::unique_ptr<Desktop>(std::make_unique<SwayDesktop>()); },
                       &support::PrivateSway::missing};

} // namespace contract
