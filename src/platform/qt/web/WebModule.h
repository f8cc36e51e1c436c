#pragma once

#include "platform/Log.h"
#include "platform/Web.h"

namespace platform::qt {

/// The web engine in a shared library, which is loaded at the first use and tried again at the next
/// where it could not be.
class WebModule final : public Web {
  public:
    WebModule(std::string libraryFile, Log& logger) : file(std::move(libraryFile)), log(logger) {}

    void cookies(std::function<void(const std::vector<Cookie>&)> done) override;
    void setCookie(const Cookie& cookie) override;
    void removeAllData() override;
    std::unique_ptr<WebWindow> open(const WebWindowDescription& description) override;

    /// Ends the engine, with what it has not stored yet. Its windows must have gone.
    void close() { engine.reset(); }

  private:
    bool load();

    std::string file;
    Log& log;
    std::unique_ptr<Web> engine;
    bool told = false;
};

} // namespace platform::qt
