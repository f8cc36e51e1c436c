#pragma once

#include "platform/Json.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform::sway {

/// A message of the compositor's interface.
struct Message {
    std::uint32_t type = 0;
    JsonValue value;
};

/// What goes before a message of that length.
std::string headerOf(std::uint32_t type, std::size_t length);

/// The messages in what comes over a socket, in parts of any size. What is cut, too large, nested
/// too deeply or no message at all is refused, and so is everything behind it.
class Messages {
  public:
    /// What comes longer than this is refused; the largest that is asked for is the user's
    /// configuration.
    static constexpr std::uint32_t longest = 4U << 20;

    void add(std::string_view part);
    /// Nothing where no message is whole.
    std::optional<Message> next();

    bool isRefused() const { return refused; }
    /// Whether there is more than one message of the largest size: what has come is to be taken
    /// before more is added.
    bool isFull() const;

  private:
    void refuse();

    std::string text;
    bool refused = false;
};

} // namespace platform::sway
