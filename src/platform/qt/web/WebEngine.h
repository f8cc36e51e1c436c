#pragma once

#include "platform/Web.h"
#include "platform/qt/web/WebProfile.h"

namespace platform::qt {

/// Qt WebEngine. This folder is a shared library of its own, since the engine is far larger than
/// the program and few users need it.
class WebEngine final : public Web {
  public:
    WebEngine();
    ~WebEngine() override;

    void cookies(std::function<void(const std::vector<Cookie>&)> done) override;
    void setCookie(const Cookie& cookie) override;
    void removeAllData() override;
    std::unique_ptr<WebWindow> open(const WebWindowDescription& description) override;

  private:
    std::shared_ptr<WebProfile> profile;
};

} // namespace platform::qt

/// What the shared library is loaded for; the caller owns the object. There must be an application
/// object.
extern "C" __attribute__((visibility("default"))) platform::Web* createWebEngine();
