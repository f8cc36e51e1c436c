#pragma once

#include "platform/Web.h"
#include "platform/memory/Displays.h"
#include "platform/memory/RunLoop.h"

#include <map>
#include <tuple>

namespace platform::memory {

class WebWindow final : public platform::WebWindow {
  public:
    WebWindow(WebWindowDescription description, const Displays& desktop);

    std::uint32_t styleMask() const override { return made.styleMask; }
    bool isVisible() const override { return visible; }
    void makeKeyAndOrderFront() override { visible = true; }
    void orderOut() override { visible = false; }
    Rect frame() const override { return place; }
    void setFrame(Rect frame) override;
    void onFrameChange(std::function<void(Rect)> changed) override { tell = std::move(changed); }

    /// As the user does it.
    void userMoves(Rect frame);

    const WebWindowDescription& description() const { return made; }

  private:
    WebWindowDescription made;
    const Displays& displays;
    Rect place;
    bool visible = false;
    std::function<void(Rect)> tell;
};

/// An engine without a network: its cookies are what was set.
class Web final : public platform::Web {
  public:
    Web(RunLoop& loop, const Displays& desktop) : runLoop(loop), displays(desktop) {}

    void cookies(std::function<void(const std::vector<Cookie>&)> done) override;
    void setCookie(const Cookie& cookie) override;
    void removeAllData() override;
    std::unique_ptr<platform::WebWindow> open(const WebWindowDescription& description) override;

    /// From now on there is no engine.
    void removeEngine() { hasEngine = false; }

    /// What a page stores besides cookies; as often as it is called.
    void pageStores() { ++stored; }
    int storedByPages() const { return stored; }

  private:
    RunLoop& runLoop;
    const Displays& displays;
    bool hasEngine = true;
    std::map<std::tuple<std::string, std::string, std::string>, Cookie>
        jar; ///< by domain, path, name
    int stored = 0;
};

} // namespace platform::memory
