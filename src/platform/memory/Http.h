#pragma once

#include "platform/Http.h"
#include "platform/memory/Effects.h"

#include <optional>
#include <utility>

namespace platform::memory {

/// A web that answers once with what it is told, and is not there otherwise.
class Http final : public platform::Http {
  public:
    explicit Http(Effects& stream) : effects(stream) {}

    HttpReply get(const HttpRequest& request) override {
        effects.emit("request", Member{"url", request.url}, Member{"timeout", request.timeout},
                     Member{"cachePolicy", request.cachePolicy});
        last = request;
        if (auto body = std::exchange(next, std::nullopt)) return {.body = std::move(*body)};
        return {.error = "nobody answers"};
    }

    /// The body of the next reply; nothing for an error.
    void setReply(std::optional<std::string> body) { next = std::move(body); }

    const HttpRequest& lastRequest() const { return last; }

  private:
    Effects& effects;
    std::optional<std::string> next;
    HttpRequest last;
};

} // namespace platform::memory
