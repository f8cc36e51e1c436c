#pragma once

#include <string_view>

namespace platform {

/// The system log. Any thread.
class Log {
  public:
    virtual ~Log() = default;

    /// One message, without a line end.
    virtual void write(std::string_view text) = 0;
};

} // namespace platform
