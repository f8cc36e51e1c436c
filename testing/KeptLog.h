#pragma once

#include "platform/Log.h"

#include <string>
#include <vector>

namespace testing_support {

/// Keeps what is logged.
class KeptLog final : public platform::Log {
  public:
    void write(std::string_view text) override { lines.emplace_back(text); }

    std::vector<std::string> lines;
};

} // namespace testing_support
