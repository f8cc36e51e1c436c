#include "contract/desktop/Desktop.h"
#include "platform/memory/Settings.h"
#include "platform/x11/keys/HotKeys.h"
#include "testing/desktop/Hand.h"
#include "testing/desktop/PrivateDesktop.h"
#include "x11/Session.h"

namespace contract {

namespace {

class X11Desktop final : public Desktop {
  public:
    X11Desktop() { session.pointer.setLocalEventsSuppressionInterval(0); }

    platform::Displays& displays() override { return session.displays; }
    platform::Pointer& pointer() override { return session.pointer; }
    platform::InputEvents& input() override { return session.input; }
    platform::Windows& windows() override { return session.windows; }
    platform::HotKeys& hotKeys() override { return keys; }
    platform::Settings& settings() override { return stored; }

    void moveTo(int x, int y) override {
        session.sync();
        hand.moveTo(x, y);
    }
    bool push(int step, const std::function<bool()>& reached) override {
        session.sync();
        return session.loop.runUntil([&] {
            if (!reached()) hand.relative(step, 0);
            return reached();
        });
    }
    void click() override { hand.click(); }
    void pressAltAnd(int functionKey) override {
        session.sync();
        hand.chord(
            {support::key::leftAlt, support::key::f2 + static_cast<xcb_keysym_t>(functionKey - 2)});
    }
    void setOwnWindowActive(bool active) override { session.ownWindowActive = active; }
    bool unplugSecond() override {
        desktop.unplug("DUMMY1");
        return true;
    }
    void plugSecond() override { lowerSecond(0); }
    void lowerSecond(int pixels) override {
        desktop.plug("DUMMY1", "1280x1024+1920+" + std::to_string(pixels));
    }
    bool until(const std::function<bool()>& reached) override {
        session.sync();
        return session.loop.runUntil(reached);
    }

  private:
    support::PrivateDesktop desktop{"1920x1080+0+0,1280x1024+1920+0"};
    x11tests::Session session{desktop.display(), GAMMA_GUARD};
    platform::memory::Clock clock;
    platform::memory::Effects effects{clock};
    platform::memory::Settings stored{effects};
    platform::x11::HotKeys keys{session.connection, stored, session.log, [this](auto work) {
                                    session.loop.schedule(0, false, "later", std::move(work));
                                }};
    support::Hand hand{desktop.display()};
};

std::optional<std::string> missing() {
    if (!support::PrivateDesktop("640x480+0+0").canPlugOutputs())
        return "needs Xorg with the dummy driver";
    return std::nullopt;
}

} // namespace

const Kind x11Desktop{
    "X11", [] { return std::unique_ptr<Desktop>(std::make_unique<X11Desktop>()); }, &missing};

} // namespace contract
