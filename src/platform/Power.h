#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

/// Identifies an assertion; numbers are not used again.
using AssertionId = std::uint32_t;

/// Keeps the displays awake. Assertions end with the process. Main thread.
class Power {
  public:
    static constexpr int success = 0;

    virtual ~Power() = default;

    /// Makes an assertion of that type and level and puts its number into `id`. Returns 0, or a
    /// result code when nothing could be inhibited; `id` is left alone then. `name` is what the
    /// system's power tools show.
    virtual int createAssertion(std::string_view type, std::uint32_t level, std::string_view name,
                                AssertionId& id) = 0;

    /// Ends an assertion. Returns 0, or a result code for one that has ended or never was.
    virtual int releaseAssertion(AssertionId id) = 0;
};

} // namespace platform
