#pragma once

#include "platform/Http.h"
#include "platform/Log.h"

#include <string_view>

namespace platform::linux {

/// The web through libcurl. A missing library is logged.
class CurlHttp final : public Http {
  public:
    explicit CurlHttp(Log& logger) : log(logger) {}

    /// No host, or one under ".invalid", is answered with an error at once: nobody is asked for a
    /// name that is reserved for not being there.
    HttpReply get(const HttpRequest& request) override;

  private:
    Log& log;
};

/// Whether the address, which may be one of mail, names no host, or one under ".invalid".
bool asksNobody(std::string_view url);

} // namespace platform::linux
