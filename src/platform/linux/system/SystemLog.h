#pragma once

#include "platform/Log.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <string>

namespace platform::linux {

/// Lines "name: text" on the standard error stream, which the session keeps in its journal. A text
/// loses its control characters, and what is longer than 500 characters is cut: it may have come
/// from anybody.
class SystemLog final : public Log {
  public:
    explicit SystemLog(std::string programName) : name(std::move(programName)) {}

    void write(std::string_view text) override;

  private:
    std::string name;
};

/// Lines that tell a developer what the program does, and a user nothing. Told to be verbose it
/// writes them all; otherwise only where the stream is the journal, and not again what it has just
/// written. There they have the priority of debugging.
class DebugLog final : public Log {
  public:
    DebugLog(std::string programName, bool isVerbose);

    void write(std::string_view text) override;

  private:
    bool isNew(std::string_view text);

    const std::string name;
    const bool verbose;
    const bool toJournal;
    /// Of the lines that were written last. A thread that comes in between costs a line or writes
    /// one too many.
    std::array<std::atomic<std::size_t>, 64> recent{};
    std::atomic<std::size_t> next = 0;
};

} // namespace platform::linux
