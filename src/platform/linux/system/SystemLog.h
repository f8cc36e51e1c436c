#pragma once

#include "platform/Log.h"

#include <string>

namespace platform::linux {

/// Lines "name: text" on the standard error stream, which the session keeps in its journal.
class SystemLog final : public Log {
  public:
    explicit SystemLog(std::string programName) : name(std::move(programName)) {}

    void write(std::string_view text) override;

  private:
    std::string name;
};

} // namespace platform::linux
